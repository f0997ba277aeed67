#pragma once

#include <string_view>

#include "cli/CliConsole.h"
#include "cli/Options.h"

namespace hivesweep {

// Throws TWrongUse when there has to be a question and nobody is there to answer it: better
// said before the work than after it.
void RequireAnswer(TCliConsole &Console, const TOptions &Options);

// The user wants it, by the options or by an answer on the terminal; else it is told that
// nothing was changed. Throws TFailure when the question was left with Ctrl+C.
bool IsWanted(TCliConsole &Console, const TOptions &Options, std::string_view Question);

} // namespace hivesweep
