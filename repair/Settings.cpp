#include "repair/Settings.h"

#include <limits>

#include "platform/Text.h"
#include "repair/BackupText.h"
#include "repair/SettingsLock.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view OptionsSection = u"RegistryOpt";

// Spelled so since the first version; a corrected name would lose every user's
// statistics.
constexpr std::u16string_view SummarySection = u"Registrysummer";

// The multi-language area is read under the key "Mui" and has always been written
// under "MUI". For the system both are one name; a file keeps the spelling that it has.
std::u16string_view WrittenName(const TArea &Area) {
  return Area.Switch == u"Mui" ? u"MUI" : Area.Switch;
}

// "07/15/2009", with what the user's locale puts between the parts.
std::u16string DateText(TClock &Clock) {
  const std::u16string Text = DateTimeText(Clock.Now());
  const std::u16string Separator = Clock.DateSeparator();
  return Text.substr(0, 2) + Separator + Text.substr(3, 2) + Separator + Text.substr(6, 4);
}

} // namespace

TAreaSwitches ReadAreaSwitches(TProfiles &Profiles, std::u16string_view MainIniPath) {
  TAreaSwitches Switches{};
  for (const TArea &Area : Areas) {
    const int Default = Area.OnByDefault ? 1 : 0;
    Switches[AreaIndex(Area.Number)] =
        (MainIniPath.empty()
             ? Default
             : ReadInteger(Profiles, MainIniPath, OptionsSection, Area.Switch, Default)) != 0;
  }
  return Switches;
}

bool TSettings::Write(const std::function<bool(const TWrite &)> &Body) {
  if (Path_.empty())
    return false;
  const TLockGuard Guard(SettingsLock());
  Platform_.Storage->MakeWritable(Path_);
  return Body([&](std::u16string_view Section, std::u16string_view Key, std::u16string_view Text) {
    return Platform_.Profiles->WriteString(Path_, Section, Key, Text);
  });
}

bool TSettings::WriteAreaSwitches(const TAreaSwitches &Switches) {
  return Write([&](const TWrite &Set) {
    bool AllWritten = true;
    for (const TArea &Area : Areas)
      AllWritten &=
          Set(OptionsSection, WrittenName(Area), Switches[AreaIndex(Area.Number)] ? u"1" : u"0");
    return AllWritten;
  });
}

bool TSettings::WriteLastFix() {
  return Write([&](const TWrite &Set) {
    return Set(OptionsSection, u"LastFix", DateTimeText(Platform_.Clock->Now()));
  });
}

bool TSettings::RecordStatistics(std::int32_t Count, bool IsScan) {
  return Write([&](const TWrite &Set) {
    const std::u16string Today = DateText(*Platform_.Clock);
    if (IsScan)
      return Set(SummarySection, u"Lastscan", Today);
    const std::int64_t Sum = std::int64_t{Total()} + Count;
    const std::u16string Text = Sum < 0 ? u"-" + ToDecimal(static_cast<std::uint64_t>(-Sum))
                                        : ToDecimal(static_cast<std::uint64_t>(Sum));
    const bool TotalWritten = Set(SummarySection, u"total", Text);
    return Set(SummarySection, u"Lastclean", Today) && TotalWritten;
  });
}

std::u16string TSettings::LastScan(std::u16string_view Default) const {
  return Platform_.Profiles->ReadString(Path_, SummarySection, u"Lastscan", Default);
}

std::u16string TSettings::LastClean(std::u16string_view Default) const {
  return Platform_.Profiles->ReadString(Path_, SummarySection, u"Lastclean", Default);
}

std::int32_t TSettings::Total() const {
  return ReadInteger(*Platform_.Profiles, Path_, SummarySection, u"total", 0);
}

} // namespace hivesweep
