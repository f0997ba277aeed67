// What a command works on.
#pragma once

#include <memory>

#include "cli/Application.h"
#include "cli/Options.h"
#include "engine/ScanRegistry.h"
#include "platform/Platform.h"
#include "repair/AppFrame.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

struct TSession {
  TPlatform Platform;
  TDataPaths Paths;
  bool IsOwnFolder = false; // the paths are the program's own, not of a folder that was given

  TSettingsPaths Settings() const { return {Paths.MainIniPath, Paths.IgnoreIniPath}; }
};

// The live system, or the registry and machine of the given files. Without both,
// that is wrong use when a registry is needed; else a platform that has only its
// local services. The data folder is the given one, the program's own one, or none.
// Creates nothing. Throws TFailure.
TSession OpenSession(const TCliHost &Host, const TOptions &Options, bool NeedsRegistry);

// What is kept in the session's data folder, which it borrows. Only a use that Writes
// creates the program's own folder when that is missing. Without a data folder that is
// wrong use. A restore that was broken off is told on the console. Throws TFailure.
enum class TFolderUse { Reads, Writes };
std::unique_ptr<TRegistryClean> OpenData(TCliConsole &Console, TSession &Session, TFolderUse Use);

} // namespace hivesweep
