// Whole files on the disk of the system that runs the program, named in UTF-16.
#pragma once

#include <cstddef>
#include <limits>
#include <string>
#include <string_view>

#include "platform/Error.h"

namespace hivesweep {

// A file of more than Limit bytes is not read: that is an error too.
TError ReadWholeFile(std::u16string_view Path, std::string &Out,
                     std::size_t Limit = std::numeric_limits<std::size_t>::max());

// The file is complete under its name or it is what it was before: it is written
// under another name in the same folder and then renamed. One that is marked
// read-only is not replaced.
TError WriteWholeFile(std::u16string_view Path, std::string_view Bytes);

// None when there is a folder of that name. Else why not.
TError CheckFolder(std::u16string_view Path);

// A path in the system's own bytes, as the command line has it: UTF-8, and on a POSIX system
// any other bytes as well. ToUtf8 makes of it what people can read.
std::u16string PathFromBytes(std::string_view Bytes);

// The path made absolute, from the current folder.
std::u16string AbsolutePath(std::u16string_view Path);

// Two parts of a path put together with the system's own separator.
std::u16string JoinPath(std::u16string_view Folder, std::u16string_view Name);

} // namespace hivesweep
