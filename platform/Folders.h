// The special-folder family of the seam. Where the system has no answer, the
// text is empty.
#pragma once

#include <string>

namespace hivesweep {

// The shell's own numbers.
enum class TSpecialFolder : int {
  Recent = 8,
  SendTo = 9,
  StartMenu = 11,
  Desktop = 16,
  CommonStartMenu = 22,
  CommonDesktop = 25,
  AppData = 26,
  CommonAppData = 35,
};

class TFolders {
public:
  TFolders() = default;
  TFolders(const TFolders &) = delete;
  TFolders &operator=(const TFolders &) = delete;
  virtual ~TFolders() = default;

  // Without a trailing backslash; at most 260 units; never created.
  virtual std::u16string Special(TSpecialFolder Folder) = 0;

  // "C:\Windows": without a trailing backslash.
  virtual std::u16string Windows() = 0;

  // The user's temporary folder, with a trailing backslash.
  virtual std::u16string Temp() = 0;

  // The folder of the running program, with a trailing backslash.
  virtual std::u16string Program() = 0;
};

} // namespace hivesweep
