// The exclusion filter told as plainly as can be: one list after the other, each entry
// searched for in freshly folded texts. The real filter must agree with it; the
// benchmark measures the two against each other.
#pragma once

#include <array>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "engine/ExclusionFilter.h"
#include "platform/Text.h"

namespace hivesweep {

inline std::optional<TProtection> WalkLiterally(const TExclusionFilter &Filter,
                                                std::u16string_view KeyPath,
                                                std::u16string_view ValueName,
                                                std::u16string_view Data) {
  using TSource = TProtection::TSource;
  for (const std::u16string &Line : Filter.ExactPairs) {
    const std::size_t Equals = Line.find(u'=');
    if (Equals != std::u16string::npos && std::u16string_view(Line).substr(0, Equals) == KeyPath &&
        std::u16string_view(Line).substr(Equals + 1) == ValueName)
      return TProtection{TSource::ExactPairs, Line};
  }
  const auto Occurs = [](const std::u16string &Entry, std::u16string_view Text) {
    return AsciiLower(Text).find(Entry) != std::u16string::npos;
  };
  for (const std::u16string &Entry : Filter.AnyFieldWords)
    if (Occurs(Entry, KeyPath) || Occurs(Entry, ValueName) || Occurs(Entry, Data))
      return TProtection{TSource::AnyFieldWords, Entry};
  for (const std::u16string &Entry : Filter.DataWords)
    if (Occurs(Entry, Data))
      return TProtection{TSource::DataWords, Entry};
  for (const std::u16string &Entry : Filter.KeyFragments)
    if (Occurs(Entry, KeyPath))
      return TProtection{TSource::KeyFragments, Entry};
  for (const std::u16string &Entry : Filter.KeyPrefixes)
    if (Occurs(Entry, KeyPath))
      return TProtection{TSource::KeyPrefixes, Entry};
  return std::nullopt;
}

// Texts as a scan meets them, some with an entry of a list, whole, cut short, in
// capitals or run into another one.
class TMixedTexts {
public:
  TMixedTexts(const TExclusionFilter &Filter, unsigned Seed) : Random_(Seed) {
    for (const auto *List :
         {&Filter.AnyFieldWords, &Filter.DataWords, &Filter.KeyFragments, &Filter.KeyPrefixes})
      Entries_.insert(Entries_.end(), List->begin(), List->end());
  }

  std::array<std::u16string, 3> Next() {
    static constexpr std::u16string_view Roots[] = {u"HKEY_LOCAL_MACHINE\\Software\\",
                                                    u"HKEY_CURRENT_USER\\Software\\",
                                                    u"HKEY_CLASSES_ROOT\\"};
    return {std::u16string(Roots[Pick(3)]) + Text(5), Pick(3) == 0 ? u"N/A" : Text(1),
            Pick(4) == 0 ? u"" : u"C:\\Program Files\\" + Text(3) + u".dll"};
  }

private:
  std::size_t Pick(std::size_t Below) { return Random_() % Below; }

  std::u16string Text(std::size_t Parts) {
    static constexpr std::u16string_view Words[] = {
        u"Microsoft", u"Vendor", u"Sof", u"hkey_", u"\\", u"\u00C4pfel", u"{2fc8f894-3409", u"\\.",
    };
    std::u16string Out;
    for (std::size_t Part = 0; Part < Parts; ++Part) {
      std::u16string Word(Words[Pick(std::size(Words))]);
      if (Pick(40) == 0) {
        Word = Entries_[Pick(Entries_.size())];
        if (Pick(3) == 0)
          Word.resize(Pick(Word.size()));
        else if (Pick(3) == 0)
          for (char16_t &Unit : Word)
            Unit = AsciiUpper(Unit);
      }
      Out += Word;
      if (Pick(2) == 0)
        Out.push_back(u'\\');
    }
    return Out;
  }

  std::mt19937 Random_;
  std::vector<std::u16string> Entries_;
};

} // namespace hivesweep
