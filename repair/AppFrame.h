// Where the program lies and where it keeps its files.
#pragma once

#include <string>

#include "platform/Folders.h"

namespace hivesweep {

struct TAppFrame {
  TAppFrame() = default; // of a system that has no such folders
  explicit TAppFrame(TFolders &Folders)
      : CommonAppDataFolder(Folders.Special(TSpecialFolder::CommonAppData)),
        UserAppDataFolder(Folders.Special(TSpecialFolder::AppData)),
        ProgramFolder(Folders.Program()) {}

  const std::u16string CommonAppDataFolder; // without a trailing backslash
  const std::u16string UserAppDataFolder;   // without a trailing backslash
  const std::u16string ProgramFolder;       // with one
};

// The files of the data folder. An empty path is a file that is not there.
struct TDataPaths {
  std::u16string IgnoreIniPath;
  std::u16string BackupFolderPath; // with a trailing backslash
  std::u16string UndoFolderPath;   // with one, beside it
  std::u16string MainIniPath;
  std::u16string LockPath; // of the file that TDataLock takes
};

// Below the user's application data; the other two folders are not for it.
TDataPaths DataPathsOf(const TAppFrame &Frame);

// In a folder that the user chose.
TDataPaths DataPathsIn(std::u16string_view Folder);

} // namespace hivesweep
