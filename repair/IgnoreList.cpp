#include "repair/IgnoreList.h"

#include <algorithm>
#include <optional>
#include <set>
#include <utility>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view Section = u"Registry";

// The text from which a file gives the same value name again: blanks and a pair of quotes
// are taken off its ends.
std::u16string IniTextOf(std::u16string_view ValueName) {
  TIniSection Read;
  Read.Add({u"name", std::u16string(Trim(ValueName))});
  std::u16string Text(ValueName);
  return Read.Find(u"name") == ValueName ? Text : u"\"" + Text + u"\"";
}

// Why the two can't stand in a line of an INI file: each such text becomes something else on
// the way through it.
TErrorCode WhyUnfit(std::u16string_view KeyPath, std::u16string_view ValueName) {
  const auto HasBreak = [](std::u16string_view Text) {
    return Text.find_first_of(std::u16string_view(u"\r\n\0", 3)) != std::u16string_view::npos;
  };
  if (HasBreak(KeyPath))
    return TErrorCode::KeyWithBreak;
  if (HasBreak(ValueName))
    return TErrorCode::ValueWithBreak;
  if (KeyPath.empty())
    return TErrorCode::KeyEmpty;
  if (KeyPath != Trim(KeyPath))
    return TErrorCode::KeyWithOuterBlanks;
  if (KeyPath.starts_with(u'['))
    return TErrorCode::KeyLikeSection;
  if (KeyPath.starts_with(u';'))
    return TErrorCode::KeyLikeComment;
  return Contains(KeyPath, u'=') ? TErrorCode::KeyWithEquals : TErrorCode::None;
}

} // namespace

TIgnoreList::TIgnoreList(TPlatform &Platform, std::u16string Path)
    : Platform_(Platform), Path_(std::move(Path)), File_(*Platform.Profiles, Path_) {}

TError TIgnoreList::Add(std::u16string_view KeyPath, std::u16string_view ValueName) {
  TProfiles &Profiles = *Platform_.Profiles;
  TStorage &Storage = *Platform_.Storage;
  if (const TErrorCode Why = WhyUnfit(KeyPath, ValueName); Why != TErrorCode::None)
    return {Why, Path_};
  TIniSection Wanted;
  if (TError Unread = Profiles.ReadSection(Path_, Section, Wanted))
    return Unread;
  std::string Before;
  const bool WasThere = !Storage.Read(Path_, Before);

  Storage.MakeWritable(Path_);
  const std::u16string Text = IniTextOf(ValueName);
  const TIniChange Change = {KeyPath, Text};
  if (TError Unwritten = Profiles.WriteSection(Path_, Section, {&Change, 1}))
    return Unwritten;
  // Whatever the file's encoding or the system's limits made of it shows only here.
  if (Contains(KeyPath) && HoldsAll(Wanted, KeyPath) &&
      Profiles.ReadString(Path_, Section, KeyPath, u"") == ValueName)
    return {};
  TError Out{TErrorCode::KeyLostInList, Path_};
  if (TError Error = WasThere ? Storage.Write(Path_, Before) : Storage.Remove(Path_))
    Out.Cause.push_back(Because(std::move(Error), TErrorCode::ListNotPutBack));
  return Out;
}

TError TIgnoreList::Remove(std::u16string_view KeyPath) {
  Platform_.Storage->MakeWritable(Path_);
  const TIniChange Change = {KeyPath, std::nullopt};
  if (TError Unwritten = Platform_.Profiles->WriteSection(Path_, Section, {&Change, 1}))
    return Unwritten;
  return Contains(KeyPath) ? TError{TErrorCode::Unwritable, Path_} : TError();
}

void TIgnoreList::Fill(TListRows &Rows) const {
  TIniSection Ignored;
  Platform_.Profiles->ReadSection(Path_, Section, Ignored);
  Rows.Clear();
  for (const TIniSection::TLine &Line : Ignored.Lines())
    if (Line.Text) {
      const std::u16string ValueName = Ignored.TextOr(Line.Name, u"");
      Rows.Add(Line.Name, {&ValueName, 1});
    }
}

// All the lines are there but those of one key.
bool TIgnoreList::HoldsAll(const TIniSection &Wanted, std::u16string_view LeftOut) const {
  TIniSection Now;
  Platform_.Profiles->ReadSection(Path_, Section, Now);
  std::set<std::pair<std::u16string_view, std::optional<std::u16string_view>>> Known;
  for (const TIniSection::TLine &Line : Now.Lines())
    Known.emplace(Line.Name, Line.Text);
  return std::ranges::all_of(Wanted.Lines(), [&](const TIniSection::TLine &Line) {
    return EqualNoCase(Line.Name, LeftOut) || Known.contains({Line.Name, Line.Text});
  });
}

} // namespace hivesweep
