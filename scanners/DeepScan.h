// The deep scan: every text of whole trees of the registry that names a path.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

// The machine's software.
std::int32_t ScanDeepFileSystem(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                TProgressBar &ProgressBar, TGroupItems &Group);

// The current user's keys, then those of every other user who is logged on.
std::int32_t ScanDeepUsers(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group);

} // namespace hivesweep
