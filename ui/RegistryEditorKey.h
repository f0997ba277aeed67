// Which key the system's registry editor shows when it is started: the one that it showed
// last, whose path it keeps in a value.
#pragma once

#include <string>
#include <string_view>

#include "platform/Registry.h"

namespace hivesweep {

// What the editor has in front of a path's root, from the path that it stored last: the
// computer's name in the editor's own language ("Arbeitsplatz\"), or nothing at all.
// Default: for a text that tells neither; where it is empty, a computer's name without a
// path behind it is no prefix either: such an editor stores it for the computer itself.
std::u16string LastKeyPrefix(std::u16string_view LastKey, std::u16string_view Default);

// The key, its root spelled out, or the nearest key above it that is there. What can't be
// looked at is taken to be there.
std::u16string NearestKey(TRegistryHost &Registry, std::u16string_view KeyPath);

// Has the editor show that key the next time that it is started. DefaultPrefix as above.
TRegStatus StoreLastKey(TRegistryHost &Registry, std::u16string_view KeyPath,
                        std::u16string_view DefaultPrefix);

} // namespace hivesweep
