#include "engine/ExclusionFilter.h"

#include <algorithm>
#include <span>

#include "engine/SafeLists.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

using TSource = TProtection::TSource;

// The matcher's lists.
enum TList : std::size_t { AnyField, InData, Fragment, Prefix };
static_assert(TPhraseMatcher::ListCount == Prefix + 1);

TStringList Copy(std::span<const std::u16string_view> Entries) {
  return {Entries.begin(), Entries.end()};
}

TStringList LinesOf(const TIniSection &Section) {
  TStringList Lines;
  for (const TIniSection::TLine &Line : Section.Lines())
    Lines.push_back(Line.Text ? Line.Name + u"=" + *Line.Text : Line.Name);
  return Lines;
}

TStringList MakeAnyFieldWords(bool IsWow64) {
  TStringList Words = Copy(BuiltInAnyFieldWords());
  if (IsWow64)
    Words.emplace_back(SystemFolderWord);
  return Words;
}

void Append(std::vector<TPhraseMatcher::TPhrase> &Phrases, const TStringList &Entries, TList List) {
  for (std::size_t Rank = 0; Rank < Entries.size(); ++Rank)
    Phrases.push_back({Entries[Rank], List, static_cast<std::uint16_t>(Rank)});
}

TPhraseMatcher MakeMatcher(const TExclusionFilter &Filter) {
  std::vector<TPhraseMatcher::TPhrase> Phrases;
  Append(Phrases, Filter.AnyFieldWords, AnyField);
  Append(Phrases, Filter.DataWords, InData);
  Append(Phrases, Filter.KeyFragments, Fragment);
  Append(Phrases, Filter.KeyPrefixes, Prefix);
  return TPhraseMatcher(Phrases);
}

} // namespace

std::u16string TProtection::RuleText() const {
  const auto Name = [this]() -> std::u16string_view {
    switch (Source) {
    case TSource::Unfixable:
      return u"Unfixable";
    case TSource::ExactPairs:
      return u"ExactPairs";
    case TSource::AnyFieldWords:
      return u"AnyFieldWords";
    case TSource::DataWords:
      return u"DataWords";
    case TSource::KeyFragments:
      return u"KeyFragments";
    case TSource::KeyPrefixes:
      return u"KeyPrefixes";
    case TSource::IgnoreFile:
      break;
    }
    return u"Ignore.ini";
  };
  return std::u16string(Name()) + u": " + Entry;
}

TExclusionFilter::TExclusionFilter(const TIniSection &Pairs, TIgnoreFile &Ignored, bool IsWow64)
    : ExactPairs(LinesOf(Pairs)), AnyFieldWords(MakeAnyFieldWords(IsWow64)),
      DataWords(Copy(BuiltInDataWords())), KeyFragments(Copy(BuiltInKeyFragments())),
      KeyPrefixes(Copy(BuiltInKeyPrefixes())), PairIndex_(ExactPairs.begin(), ExactPairs.end()),
      Matcher_(MakeMatcher(*this)), Ignored_(Ignored) {}

std::optional<TProtection> TExclusionFilter::Check(std::u16string_view KeyPath,
                                                   std::u16string_view ValueName,
                                                   std::u16string_view Data) const {
  // A line matches when its first "=" stands where this one does: not when the key
  // has an "=" of its own.
  if (!PairIndex_.empty() && !Contains(KeyPath, u'=')) {
    std::u16string Pair(KeyPath);
    Pair.push_back(u'=');
    Pair += ValueName;
    if (PairIndex_.contains(Pair))
      return TProtection{TSource::ExactPairs, std::move(Pair)};
  }

  const TPhraseMatcher::TRanks InKey = Matcher_.Search(KeyPath);
  const TPhraseMatcher::TRanks InName = Matcher_.Search(ValueName);
  const TPhraseMatcher::TRanks InText = Matcher_.Search(Data);
  const auto Hit = [](TProtection::TSource Source, const TStringList &Entries,
                      std::uint16_t Rank) -> std::optional<TProtection> {
    if (Rank == TPhraseMatcher::NotFound)
      return std::nullopt;
    return TProtection{Source, Entries[Rank]};
  };
  // The lowest rank is the entry that a walk along the list meets first.
  if (auto Protection = Hit(TSource::AnyFieldWords, AnyFieldWords,
                            std::min({InKey[AnyField], InName[AnyField], InText[AnyField]})))
    return Protection;
  if (auto Protection = Hit(TSource::DataWords, DataWords, InText[InData]))
    return Protection;
  if (auto Protection = Hit(TSource::KeyFragments, KeyFragments, InKey[Fragment]))
    return Protection;
  if (auto Protection = Hit(TSource::KeyPrefixes, KeyPrefixes, InKey[Prefix]))
    return Protection;
  if (Ignored_.Contains(KeyPath))
    return TProtection{TSource::IgnoreFile, std::u16string(KeyPath)};
  return std::nullopt;
}

} // namespace hivesweep
