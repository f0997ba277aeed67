// Opens the system's registry editor at a key.
#pragma once

#include <string_view>

#include "platform/Platform.h"

namespace hivesweep {

// KeyPath with its root spelled out; of a key that is gone, the nearest one above it. An
// editor that runs is left alone where the system lets another one run beside it; where
// it does not, it is asked to end, and brought to the front when it does not end either.
// Handles messages meanwhile; asked again by one of them, it does nothing. False when the
// editor could not be started.
bool OpenInRegistryEditor(TPlatform &Platform, std::u16string_view KeyPath);

} // namespace hivesweep
