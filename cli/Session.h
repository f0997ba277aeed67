// What a command works on.
#pragma once

#include "cli/Application.h"
#include "cli/Options.h"
#include "engine/ScanRegistry.h"
#include "platform/Platform.h"

namespace hivesweep {

struct TSession {
  TPlatform Platform;
  TSettingsPaths Settings;
};

// The live system, or the registry and machine of the given files. Without both,
// that is wrong use when a registry is needed; else a platform that has only its
// local services. Settings are those of the given folder, of the program's own one,
// or none. Throws TFailure.
TSession OpenSession(const TCliHost &Host, const TOptions &Options, bool NeedsRegistry);

} // namespace hivesweep
