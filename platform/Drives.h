// The drive family of the seam.
#pragma once

#include <string_view>

namespace hivesweep {

// The numbers are the system's own.
enum class TDriveType {
  Unknown = 0,
  NoRoot = 1,
  Removable = 2,
  Fixed = 3,
  Network = 4,
  CdRom = 5,
  RamDisk = 6,
};

class TDrives {
public:
  TDrives() = default;
  TDrives(const TDrives &) = delete;
  TDrives &operator=(const TDrives &) = delete;
  virtual ~TDrives() = default;

  // The type of the drive with this root, "C:\". Any text that is not a letter, a
  // colon and a backslash (or slash) is NoRoot: what the system would say of it
  // depends on the folder in which the program was started.
  virtual TDriveType TypeOf(std::u16string_view Root) = 0;
};

// A letter, a colon and one backslash or slash.
bool IsDriveRoot(std::u16string_view Text);

} // namespace hivesweep
