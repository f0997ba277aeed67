// Files that the command line is told to read, or stands on.
#pragma once

#include <string>
#include <string_view>

#include "cli/CliConsole.h"
#include "cli/Session.h"
#include "platform/DiskFile.h"

namespace hivesweep {

// The whole file of that name, which is in UTF-8; "-" is standard input. Throws TFailure.
std::string ReadInput(TCliConsole &Console, const std::string &Name,
                      std::size_t Limit = LargestInputFile);

// What messages call it, in UTF-8.
std::string NameOfInput(const std::string &Name);

// A settings file that is there can be read. The system's own functions take one that
// can't for an empty one, and nobody should lose an entry because the list that protects
// it was locked. An empty path is fine. Throws TFailure.
void RequireReadable(TSession &Session, std::u16string_view Path);

} // namespace hivesweep
