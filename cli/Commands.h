// What the commands of the table in Application.cpp do.
#pragma once

#include "cli/Application.h"
#include "cli/Failure.h"
#include "cli/Options.h"

namespace hivesweep {

// Each answers the exit code or throws TFailure.
TExitCode RunAreas(TCliHost &Host, const TOptions &Options);
TExitCode RunScan(TCliHost &Host, const TOptions &Options);
TExitCode RunFix(TCliHost &Host, const TOptions &Options);
TExitCode RunBackups(TCliHost &Host, const TOptions &Options);
TExitCode RunRestore(TCliHost &Host, const TOptions &Options);
TExitCode RunDelete(TCliHost &Host, const TOptions &Options);
TExitCode RunIgnore(TCliHost &Host, const TOptions &Options);
TExitCode RunStatistics(TCliHost &Host, const TOptions &Options);

} // namespace hivesweep
