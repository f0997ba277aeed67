// The scanners of COM classes and type libraries. Both move the bar once for each class
// or library, not once for themselves.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

std::int32_t ScanClasses(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                         TProgressBar &ProgressBar, TGroupItems &Group);
std::int32_t ScanTypeLibraries(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                               TProgressBar &ProgressBar, TGroupItems &Group);

} // namespace hivesweep
