// The scanners of what opens which file: applications, file types and extensions of
// the class root, the extensions that the explorer keeps for the user, and the
// machine's own classes.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

// An application of which every command that can be told is dead.
std::int32_t ScanApplications(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group);

// File types with dead icons or commands, and empty ones.
std::int32_t ScanFileTypes(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group);

// Extensions whose file type is gone, and empty ones.
std::int32_t ScanExtensions(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                            TProgressBar &ProgressBar, TGroupItems &Group);

// What the explorer remembers to open a file with, where that is gone. What the user
// has chosen himself is never touched.
std::int32_t ScanExplorerExtensions(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                    TProgressBar &ProgressBar, TGroupItems &Group);

// The machine's classes: empty ones, and extensions whose file type is gone.
std::int32_t ScanMachineClasses(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                TProgressBar &ProgressBar, TGroupItems &Group);

} // namespace hivesweep
