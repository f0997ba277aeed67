#include "scanners/ComRules.h"

#include <algorithm>
#include <iterator>

#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/LocalTargets.h"

namespace hivesweep {

std::optional<TProblemType> ClassPartLabel(std::u16string_view Subkey) {
  static constexpr struct {
    std::u16string_view Name;
    TProblemType Label;
  } Parts[] = {
      {u"inprocserver32", TProblemType::ActiveX},
      {u"inprocserver", TProblemType::ActiveX},
      {u"toolboxbitmap32", TProblemType::ActiveX},
      {u"localserver32", TProblemType::ActiveX},
      {u"progid", TProblemType::ActiveX},
      {u"versionindependentprogid", TProblemType::ActiveX},
      {u"defaulticon", TProblemType::ApplicationIcon},
  };
  for (const auto &Part : Parts)
    if (Part.Name.size() == Subkey.size() && FindNoAsciiCase(Subkey, Part.Name) == 0)
      return Part.Label;
  return std::nullopt;
}

bool IsLeftAlone(std::u16string_view Class) {
  static constexpr std::u16string_view Classes[] = {
      u"{6B75345B-AA36-438A-BBE6-4078B4C6984D}",
      u"{6D84BC07-7979-4E59-9589-17E1E5A8FF55}",
      u"{BE65189A-4770-47A0-9B7B-68827DB1C317}",
  };
  return std::find(std::begin(Classes), std::end(Classes), Class) != std::end(Classes);
}

std::optional<std::u16string> DeadClassTarget(const TScanContext &Context,
                                              std::u16string_view Text) {
  std::u16string Target(Text);
  ExpandSystemRoot(Target, Context.WinDir);
  Target = WithoutQuotes(Target);
  if (!HasDriveForm(Target))
    return std::nullopt;
  const std::u16string_view File = ExtractFileFromCommand(Target);
  const std::size_t Dot = DotPosition(File);
  if (UnitAt(Target, Dot) != u'.' && UnitAt(Target, Dot + 1) != u'.')
    return std::nullopt;
  if (!Context.Disk.IsOnFixedDrive(Target) || !Context.Disk.NoSuchFile(File))
    return std::nullopt;
  return Target;
}

bool IsDeadLibrary(const TScanContext &Context, std::u16string_view Text) {
  return UnitAt(Text, DotPosition(Text)) == u'.' && IsLocalPath(Context.Disk, Text) &&
         Context.Disk.NoSuchFile(Text);
}

std::optional<std::u16string> DeadLibraryFolder(const TScanContext &Context,
                                                std::u16string_view Text) {
  std::u16string Path(Text);
  ExpandSystemRoot(Path, Context.WinDir);
  if (!IsGoneFileOrFolder(Context, Path, CountQuotes(Path)))
    return std::nullopt;
  return Path;
}

} // namespace hivesweep
