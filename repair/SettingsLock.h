#pragma once

#include "platform/Lock.h"

namespace hivesweep {

// The one lock of the process that guards every write to the settings file: entered
// first, then the file is opened. Reading does without it.
TLock &SettingsLock();

} // namespace hivesweep
