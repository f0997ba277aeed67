// Files that the command line is told to read, or stands on.
#pragma once

#include <string>
#include <string_view>

#include "cli/Session.h"

namespace hivesweep {

// The whole file of that name, which is in UTF-8 as are its messages. Throws TFailure.
std::string ReadInput(const std::string &Name);

// A settings file that is there can be read. The system's own functions take one that
// can't for an empty one, and nobody should lose an entry because the list that protects
// it was locked. An empty path is fine. Throws TFailure.
void RequireReadable(TSession &Session, std::u16string_view Path);

} // namespace hivesweep
