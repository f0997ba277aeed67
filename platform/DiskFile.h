// Whole files on the disk of the system that runs the program, named in UTF-16.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "platform/Error.h"

namespace hivesweep {

// No larger file is read: texts of registries, plans, backups and their records.
inline constexpr std::size_t LargestInputFile = std::size_t{512} << 20;

// Nor a larger settings file, or description of a machine.
inline constexpr std::size_t LargestSettingsFile = std::size_t{64} << 20;

// Why a file was not read.
inline TError NoRegularFile() { return {TErrorCode::NoRegularFile, {}}; }
inline TError FileTooLarge(std::size_t Limit) {
  return {TErrorCode::FileTooLarge, {}, static_cast<std::uint32_t>(Limit >> 20)};
}

// Reads a regular file. A device or a pipe, which may have no end, is an error, and so is a
// file of more than Limit bytes.
TError ReadWholeFile(std::u16string_view Path, std::string &Out,
                     std::size_t Limit = LargestInputFile);

// The file is complete under its name or it is what it was before: it is written
// under another name in the same folder and then renamed. Where a link stands, this is done
// to the file that it leads to. One that is marked read-only is not replaced. A device or a
// pipe is opened and written.
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
