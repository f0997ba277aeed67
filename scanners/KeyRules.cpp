#include "scanners/KeyRules.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

TContent ContentOf(TScannerRun &Run, const TKeyAt &At) {
  const auto Counts = Run.Counts(At);
  if (!Counts || Counts->Subkeys != 0 || Counts->Values > 1)
    return TContent::Filled;
  if (Counts->Values == 0)
    return TContent::Nothing;
  const auto Default = Run.DefaultText(At);
  return Default && Trim(*Default).empty() ? TContent::BlankDefault : TContent::Filled;
}

bool HoldsOnlyItsDefault(TScannerRun &Run, const TKeyAt &At) {
  const auto Counts = Run.Counts(At);
  return Counts && Counts->Subkeys == 0 && Counts->Values == 1;
}

bool ReportIfEmpty(TScannerRun &Run, const TKeyAt &At, TProblemType Label) {
  const TContent Content = ContentOf(Run, At);
  if (Content == TContent::Filled)
    return false;
  std::optional<std::u16string_view> Default;
  if (Content == TContent::BlankDefault)
    Default = u"";
  Run.ReportKey(Label, At.Path, u"", Run.Engine.KindKey, Default);
  return true;
}

bool IsNoClass(TScannerRun &Run, std::u16string_view Name, std::span<const TClassesHome> Homes) {
  return !Trim(Name).empty() &&
         std::all_of(Homes.begin(), Homes.end(), [&](const TClassesHome &Home) {
           return Run.NoSuchKey(Home.Root, std::u16string(Home.Front).append(Name));
         });
}

bool IsKeptAlive(TScannerRun &Run, const TKeyAt &Extension, std::span<const TClassesHome> Homes) {
  TRegKey &Key = *Extension.Key;
  for (const std::u16string_view Subkey : {u"shell", u"ShellEx", u"PersistentHandler"})
    if (Key.Open(Subkey).Status != TRegStatus::NotFound)
      return true;
  TRegValue Kind;
  if (Key.Read(u"PerceivedType", Kind) != TRegStatus::NotFound)
    return true;
  const TRegOpened Others = Key.Open(u"OpenWithProgids");
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

} // namespace hivesweep
