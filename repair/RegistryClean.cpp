#include "repair/RegistryClean.h"

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view OptionsSection = u"RegistryOpt";

// Spelled so since the first version; a corrected name would lose every user's
// statistics.
constexpr std::u16string_view SummarySection = u"Registrysummer";

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

TRegistryClean::TRegistryClean(TPlatform &Platform)
    : Frame(*Platform.Folders), Paths(DataPathsOf(Frame)), Platform_(Platform) {
  CreateFolders();
}

void TRegistryClean::CreateFolders() {
  TFileSystem &Files = *Platform_.Files;
  const std::u16string &Base = Frame.UserAppDataFolder;
  for (const std::u16string_view Folder : {u"\\Orvane\\", u"\\Orvane\\Tallowmere V4\\"}) {
    const std::u16string Path = Base + std::u16string(Folder);
    if (NoSuchFolder(Files, Path))
      Files.CreateFolder(Path);
  }
  CreateFolderPath(Files, Base + u"\\Orvane\\Tallowmere V4\\Hivesweep\\");
  // The name that is tested has two letters changed round, so the test hardly ever
  // finds anything and the folder is created, or found there, at every start. That
  // costs nothing, and a backup folder that was deleted comes back.
  if (NoSuchFolder(Files, Base + u"\\Orvnae\\Tallowmere V4\\Hivesweep\\backup\\"))
    CreateFolderPath(Files, Paths.BackupFolderPath);
}

void TRegistryClean::LoadAreaSwitches(TAreaList &List) const {
  const TAreaSwitches Switches = ReadAreaSwitches(*Platform_.Profiles, Paths.MainIniPath);
  for (std::size_t Row = 0; Row < Switches.size(); ++Row)
    List.SetChecked(static_cast<int>(Row), Switches[Row]);
}

void TRegistryClean::LoadSummary(TStatusLabel &LastScan, TStatusLabel &LastClean,
                                 TStatusLabel &Total, std::u16string_view NoneText) const {
  TProfiles &Profiles = *Platform_.Profiles;
  LastScan.SetText(Profiles.ReadString(Paths.MainIniPath, SummarySection, u"Lastscan", NoneText));
  LastClean.SetText(Profiles.ReadString(Paths.MainIniPath, SummarySection, u"Lastclean", NoneText));
  const int Fixed = ReadInteger(Profiles, Paths.MainIniPath, SummarySection, u"total", 0);
  Total.SetText(Fixed < 0 ? u"-" + ToDecimal(static_cast<std::uint64_t>(-Fixed))
                          : ToDecimal(static_cast<std::uint64_t>(Fixed)));
}

} // namespace hivesweep
