#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace hivesweep {

// A path may have this many units, its final zero included, before the system
// needs it in another form; a folder that is made, twelve fewer.
constexpr std::size_t PathRoom = 260;
constexpr std::size_t NewFolderRoom = PathRoom - 12;

// The absolute path in the form in which the system's file functions take it,
// whatever its length.
std::u16string SystemPath(std::u16string_view Path, std::size_t Room = PathRoom);

} // namespace hivesweep
