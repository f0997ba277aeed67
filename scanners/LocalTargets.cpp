#include "scanners/LocalTargets.h"

#include "engine/PathRules.h"
#include "platform/Text.h"

namespace hivesweep {

bool IsLocalPath(TScanDisk &Disk, std::u16string_view Path) {
  return HasDriveForm(Path) && Disk.IsOnFixedDrive(Path);
}

bool IsGoneFileOrFolder(const TScanContext &Context, std::u16string_view Path,
                        std::int32_t Quotes) {
  if (!IsLocalPath(Context.Disk, Path))
    return false;
  const std::u16string_view File = ExtractFileFromCommand(Path);
  if (!Context.Disk.NoSuchFile(File))
    return false;
  constexpr std::int32_t OnePair = 2; // more of them enclose arguments, too
  return UnitAt(File, DotPosition(File)) == u'.' ||
         (!Contains(File, u'.') && Quotes <= OnePair && Context.Disk.NoSuchFolder(File));
}

} // namespace hivesweep
