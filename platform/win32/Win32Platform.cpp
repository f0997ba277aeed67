#include "platform/win32/Hosts.h"
#include "platform/win32/Win32Registry.h"

namespace hivesweep {

TPlatform MakeLocalServices() {
  TPlatform Platform;
  Platform.Profiles = MakeWin32Profiles();
  Platform.Storage = MakeWin32Storage();
  Platform.Clock = MakeWin32Clock();
  Platform.Messages = MakeWin32Messages();
  Platform.Shell = MakeWin32Shell();
  return Platform;
}

std::optional<TPlatform> MakeLivePlatform() {
  TPlatform Platform = MakeLocalServices();
  Platform.Registry = std::make_unique<TWin32Registry>();
  Platform.Files = MakeWin32Files();
  Platform.Drives = MakeWin32Drives();
  Platform.Folders = MakeWin32Folders();
  Platform.System = MakeWin32System();
  return Platform;
}

} // namespace hivesweep
