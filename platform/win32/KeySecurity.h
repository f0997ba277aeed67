// Who may do what with a key of the live registry.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "platform/win32/Win32.h"

namespace hivesweep {

// The key's owner, group and access list as one self-relative descriptor. Answers the
// system's error; after one, Out is empty.
LONG ReadKeySecurity(HKEY Key, std::vector<std::byte> &Out);

// The key's mandatory label, as ReadKeySecurity answers. Empty when it has none, and before
// Windows Vista.
LONG ReadKeyLabel(HKEY Key, std::vector<std::byte> &Out);

// Gives the key that label; its handle must have WRITE_OWNER. Answers the system's error.
LONG SetKeyLabel(HKEY Key, std::span<const std::byte> Label);

// Gives the key the descriptor's access list, if it has one that is in order and the
// user may; the key's handle must have WRITE_DAC. The bytes may come from anywhere.
void SetKeyAccessList(HKEY Key, std::span<const std::byte> Security);

// Gives the key the descriptor's owner and group, those of them that the user may give: an
// administrator may give any. The key's handle must have WRITE_OWNER.
void SetKeyOwner(HKEY Key, std::span<const std::byte> Security);

} // namespace hivesweep
