// The live hosts of the families that need no header of their own.
#pragma once

#include <memory>

#include "platform/Platform.h"

namespace hivesweep {

std::unique_ptr<TFileSystem> MakeWin32Files();
std::unique_ptr<TDrives> MakeWin32Drives();
std::unique_ptr<TFolders> MakeWin32Folders();
std::unique_ptr<TSystem> MakeWin32System();
std::unique_ptr<TProfiles> MakeWin32Profiles();
std::unique_ptr<TStorage> MakeWin32Storage();
std::unique_ptr<TClock> MakeWin32Clock();
std::unique_ptr<TMessages> MakeWin32Messages();
std::unique_ptr<TShell> MakeWin32Shell();

} // namespace hivesweep
