#include "repair/IgnoreList.h"

#include <algorithm>
#include <unordered_set>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view Section = u"Registry";

// Each becomes something else on the way through an INI file.
bool FitsIntoIni(std::u16string_view KeyPath) {
  return !KeyPath.empty() && KeyPath == Trim(KeyPath) && !KeyPath.starts_with(u';') &&
         !KeyPath.starts_with(u'[') &&
         KeyPath.find_first_of(std::u16string_view(u"=\r\n\0", 4)) == std::u16string_view::npos;
}

} // namespace

TIgnoreList::TIgnoreList(TPlatform &Platform, std::u16string Path)
    : Platform_(Platform), Path_(std::move(Path)), File_(*Platform.Profiles, Path_) {}

TError TIgnoreList::Add(std::u16string_view KeyPath, std::u16string_view ValueName) {
  TProfiles &Profiles = *Platform_.Profiles;
  TStorage &Storage = *Platform_.Storage;
  if (!FitsIntoIni(KeyPath))
    return {TErrorCode::KeyUnfitForList, Path_};
  std::vector<std::u16string> Wanted = Profiles.Lines(Path_, Section);
  std::erase_if(Wanted, [&](std::u16string_view Line) {
    return EqualNoCase(Line.substr(0, Line.find(u'=')), KeyPath);
  });
  std::string Before;
  const bool WasThere = !Storage.Read(Path_, Before);

  Storage.MakeWritable(Path_);
  if (!Profiles.WriteString(Path_, Section, KeyPath, ValueName))
    return {TErrorCode::Unwritable, Path_};
  // Whatever the file's encoding or the system's limits made of it shows only here.
  if (Contains(KeyPath) && HoldsAll(Wanted))
    return {};
  TError Out{TErrorCode::KeyLostInList, Path_};
  if (TError Error = WasThere ? Storage.Write(Path_, Before) : Storage.Remove(Path_))
    Out.Cause.push_back(Because(std::move(Error), TErrorCode::ListNotPutBack));
  return Out;
}

TError TIgnoreList::Remove(std::u16string_view KeyPath) {
  Platform_.Storage->MakeWritable(Path_);
  if (!Platform_.Profiles->WriteString(Path_, Section, KeyPath, std::nullopt) || Contains(KeyPath))
    return {TErrorCode::Unwritable, Path_};
  return {};
}

void TIgnoreList::Fill(TListRows &Rows) const {
  TProfiles &Profiles = *Platform_.Profiles;
  Rows.Clear();
  for (const std::u16string &KeyPath : Profiles.KeyNames(Path_, Section)) {
    const std::u16string ValueName = Profiles.ReadString(Path_, Section, KeyPath, u"");
    Rows.Add(KeyPath, {&ValueName, 1});
  }
}

bool TIgnoreList::HoldsAll(const std::vector<std::u16string> &Lines) const {
  const std::vector<std::u16string> Now = Platform_.Profiles->Lines(Path_, Section);
  const std::unordered_set<std::u16string_view> Known(Now.begin(), Now.end());
  return std::ranges::all_of(Lines,
                             [&](const std::u16string &Line) { return Known.contains(Line); });
}

} // namespace hivesweep
