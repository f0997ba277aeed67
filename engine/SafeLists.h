// The built-in safe lists: what is known to break, or to belong to somebody else,
// when a registry cleaner touches it.
#pragma once

#include <span>
#include <string_view>

namespace hivesweep {

// Tried against the key, the value name and the data.
std::span<const std::u16string_view> BuiltInAnyFieldWords();

// One more of these on a 64-bit system, where a 32-bit program is shown another
// folder under this name and so can't judge what lies in the real one.
inline constexpr std::u16string_view SystemFolderWord = u"\\system32";

// Tried against the data.
std::span<const std::u16string_view> BuiltInDataWords();

// Both tried against the key, anywhere in it.
std::span<const std::u16string_view> BuiltInKeyFragments();
std::span<const std::u16string_view> BuiltInKeyPrefixes();

// Upper case: the parts of the registry that the other areas look after, which the
// deep scan leaves out.
std::span<const std::u16string_view> BuiltInScannedAreaKeys();

} // namespace hivesweep
