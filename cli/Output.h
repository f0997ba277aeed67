// Where the words of the command line go.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "cli/CliConsole.h"

namespace hivesweep {

// To standard output. Throws TFailure when it can't be written.
void WriteOutput(TCliConsole &Console, std::string_view Utf8);

// To the file, which is then complete or what it was before; without one to standard
// output. Throws TFailure.
void WriteResult(TCliConsole &Console, const std::optional<std::string> &File,
                 std::string_view Utf8);

// One line on standard error, after the program's name. Whatever a terminal would act
// on is taken out of the message, and the middle of a very long one.
void Complain(TCliConsole &Console, std::string_view Utf8);

// How wide a text for people may be; 0: as wide as it likes.
int WidthOfResult(TCliConsole &Console, const std::optional<std::string> &File);

} // namespace hivesweep
