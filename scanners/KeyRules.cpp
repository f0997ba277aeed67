#include "scanners/KeyRules.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

TContent ContentOf(TRegKey &Key) {
  TRegCounts Counts;
  if (Key.Counts(Counts) != TRegStatus::Ok || Counts.Subkeys != 0 || Counts.Values > 1)
    return TContent::Filled;
  if (Counts.Values == 0)
    return TContent::Nothing;
  TRegValue Default;
  const bool Blank = Key.Read(u"", Default) == TRegStatus::Ok && Default.Data().IsText() &&
                     Trim(Default.Data().Text()).empty();
  return Blank ? TContent::BlankDefault : TContent::Filled;
}

bool IsNoClass(TScannerRun &Run, std::u16string_view Name, std::span<const TClassesHome> Homes) {
  return !Trim(Name).empty() &&
         std::all_of(Homes.begin(), Homes.end(), [&](const TClassesHome &Home) {
           return Run.NoSuchKey(Home.Root, std::u16string(Home.Front).append(Name));
         });
}

bool IsKeptAlive(TScannerRun &Run, TRegKey &Extension, std::span<const TClassesHome> Homes) {
  for (const std::u16string_view Subkey : {u"shell", u"ShellEx", u"PersistentHandler"})
    if (Extension.Open(Subkey).Status != TRegStatus::NotFound)
      return true;
  TRegValue Kind;
  if (Extension.Read(u"PerceivedType", Kind) != TRegStatus::NotFound)
    return true;
  const TRegOpened Others = Extension.Open(u"OpenWithProgids");
  if (!Others.Key)
    return Others.Status != TRegStatus::NotFound;
  TRegValueList Types;
  if (Others.Key->Values(Types) != TRegStatus::Ok)
    return true;
  for (std::size_t Index = 0; Index < Types.Count(); ++Index)
    if (!Types[Index].Name.empty() && !IsNoClass(Run, Types[Index].Name, Homes))
      return true;
  return false;
}

std::u16string DefaultText(TRegKey &Key) {
  TRegValue Default;
  if (Key.Read(u"", Default) != TRegStatus::Ok || !Default.Data().IsText())
    return {};
  return std::u16string(Default.Data().Text());
}

} // namespace hivesweep
