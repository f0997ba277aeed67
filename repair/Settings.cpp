#include "repair/Settings.h"

#include <algorithm>
#include <limits>
#include <optional>
#include <vector>

#include "platform/Text.h"
#include "repair/BackupText.h"
#include "repair/SettingsLock.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view OptionsSection = u"RegistryOpt";

// Spelled so since the first version; a corrected name would lose every user's
// statistics.
constexpr std::u16string_view SummarySection = u"Registrysummer";

constexpr std::u16string_view TotalKey = u"total";

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
  TIniSection Options;
  if (!MainIniPath.empty())
    Profiles.ReadSection(MainIniPath, OptionsSection, Options);
  TAreaSwitches Switches{};
  for (const TArea &Area : Areas) {
    const std::optional<std::int64_t> Number = WholeNumber(Options.Find(Area.Switch).value_or(u""));
    Switches[AreaIndex(Area.Number)] = Number ? *Number != 0 : Area.OnByDefault;
  }
  return Switches;
}

bool TSettings::Write(std::u16string_view Section, std::span<const TIniChange> Changes) {
  if (Path_.empty())
    return false;
  Platform_.Storage->MakeWritable(Path_);
  // Another program may just be writing the file.
  constexpr int Tries = 10;
  constexpr std::uint32_t PauseBetween = 30; // milliseconds
  for (int Try = 1; Platform_.Profiles->WriteSection(Path_, Section, Changes); ++Try) {
    if (Try == Tries)
      return false;
    Platform_.Clock->Pause(PauseBetween);
  }
  return true;
}

bool TSettings::WriteAreaSwitches(const TAreaSwitches &Switches) {
  std::vector<TIniChange> Changes;
  for (const TArea &Area : Areas)
    Changes.push_back({WrittenName(Area), Switches[AreaIndex(Area.Number)] ? u"1" : u"0"});
  const TLockGuard Guard(SettingsLock());
  return Write(OptionsSection, Changes);
}

bool TSettings::WriteLastFix() {
  const std::u16string Now = DateTimeText(Platform_.Clock->Now());
  const TIniChange Change = {u"LastFix", Now};
  const TLockGuard Guard(SettingsLock());
  return Write(OptionsSection, {&Change, 1});
}

bool TSettings::RecordStatistics(std::int32_t Count, bool IsScan) {
  const std::u16string Today = DateText(*Platform_.Clock);
  const TLockGuard Guard(SettingsLock());
  if (IsScan) {
    const TIniChange Change = {u"Lastscan", Today};
    return Write(SummarySection, {&Change, 1});
  }
  TIniSection Known;
  if (Path_.empty() || Platform_.Profiles->ReadSection(Path_, SummarySection, Known))
    return false;
  const std::u16string_view Stored = Known.Find(TotalKey).value_or(u"");
  const std::optional<std::int64_t> Total = Stored.empty() ? 0 : WholeNumber(Stored);
  std::vector<TIniChange> Changes = {{u"Lastclean", Today}};
  // The largest number stands for all that are larger: there is nothing to add to.
  constexpr std::int64_t Largest = std::numeric_limits<std::int64_t>::max();
  const bool Grows = Total && *Total < Largest - std::max(Count, 0);
  const std::u16string Sum = Grows ? ToSignedDecimal(*Total + Count) : u"";
  if (Grows)
    Changes.push_back({TotalKey, Sum});
  return Write(SummarySection, Changes) && Total.has_value();
}

TSummary TSettings::Summary(std::u16string_view NoneText) const {
  TIniSection Known;
  if (!Path_.empty())
    Platform_.Profiles->ReadSection(Path_, SummarySection, Known);
  return {Known.TextOr(u"Lastscan", NoneText), Known.TextOr(u"Lastclean", NoneText),
          WholeNumber(Known.Find(TotalKey).value_or(u"")).value_or(0)};
}

} // namespace hivesweep
