// Opens the system's registry editor at a key.
#pragma once

#include <string_view>

#include "platform/Platform.h"

namespace hivesweep {

// KeyPath with its root spelled out. False when the editor could not be started.
bool OpenInRegistryEditor(TPlatform &Platform, std::u16string_view KeyPath);

} // namespace hivesweep
