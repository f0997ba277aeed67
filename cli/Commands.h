// What the commands of the table in Application.cpp do.
#pragma once

#include "cli/Application.h"
#include "cli/Failure.h"
#include "cli/Options.h"

namespace hivesweep {

// Each answers the exit code or throws TFailure.
TExitCode RunAreas(TCliHost &Host, const TOptions &Options);
TExitCode RunScan(TCliHost &Host, const TOptions &Options);

} // namespace hivesweep
