// The whole seam: everything that the program asks of an operating system, one
// object per family. A program chooses its platform when it starts; all above
// sees this and nothing else.
#pragma once

#include <memory>
#include <optional>

#include "platform/Clock.h"
#include "platform/Drives.h"
#include "platform/FileSystem.h"
#include "platform/Folders.h"
#include "platform/Messages.h"
#include "platform/Profiles.h"
#include "platform/Registry.h"
#include "platform/Shell.h"
#include "platform/Storage.h"
#include "platform/System.h"

namespace hivesweep {

// No member is null once the platform is made.
struct TPlatform {
  std::unique_ptr<TRegistryHost> Registry;
  std::unique_ptr<TFileSystem> Files;
  std::unique_ptr<TDrives> Drives;
  std::unique_ptr<TFolders> Folders;
  std::unique_ptr<TSystem> System;
  std::unique_ptr<TProfiles> Profiles;
  std::unique_ptr<TStorage> Storage;
  std::unique_ptr<TClock> Clock;
  std::unique_ptr<TMessages> Messages;
  std::unique_ptr<TShell> Shell;
};

// The running Windows, all of it real. Nothing on a system that has no registry.
std::optional<TPlatform> MakeLivePlatform();

// The families that are real on every system the program is built for: settings
// files, storage, clock, messages, shell. The machine's own families are left null, for a
// host that brings them.
TPlatform MakeLocalServices();

} // namespace hivesweep
