// The command line as a function.
#pragma once

#include <functional>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/CliConsole.h"
#include "engine/ScanRegistry.h"
#include "platform/Platform.h"

namespace hivesweep {

// What a run of the command line stands on. Everything must outlive the run.
struct TCliHost {
  TCliConsole &Console;
  std::string Version;
  std::span<const TScannerRow> Scanners;
  std::function<std::optional<TPlatform>()> MakeLive; // nothing where there is no registry
};

// Runs one command line, given in UTF-8 and without the program's name. Answers the
// exit code, one of TExitCode.
// Failures become messages; no exception leaves it.
int RunCli(TCliHost &Host, const std::vector<std::string> &Arguments);

} // namespace hivesweep
