// A scan as commands run it.
#pragma once

#include <string>
#include <string_view>

#include "cli/Application.h"
#include "cli/Interrupt.h"
#include "cli/Options.h"
#include "cli/Session.h"
#include "engine/ProblemList.h"
#include "engine/ScanRegistry.h"

namespace hivesweep {

// Shows its progress, ends at Ctrl+C, and grades what it found.
class TScanRun {
public:
  // From here on Ctrl+C is caught. Throws TFailure.
  TScanRun(TCliHost &Host, const TOptions &Options);

  // AreaFlags as the engine takes them. What could not be looked at is told on standard
  // error: nobody may take it for healthy.
  void Scan(std::u16string_view AreaFlags);

  // The areas that the options name; without any, those that the settings have.
  std::u16string AreaFlags() const;

  bool ShowsProgress() const;

  TSession Session;
  TInterruptMessages &Messages; // the session's
  TListViewManage Problems;
  TScanRegistry Engine;

  bool WasInterrupted = false; // the scan was
  bool AnyFailed = false;      // an area was broken off, or settings could not be read

private:
  bool TellFailures() const;

  TCliConsole &Console_;
  const TOptions &Options_;
};

} // namespace hivesweep
