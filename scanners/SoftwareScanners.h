// The scanners of what removed programs leave behind: empty keys of vendors, entries of
// the list of programs that name missing files, and cached entries of that list that
// no program stands behind.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

std::int32_t ScanUserSoftware(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group);
std::int32_t ScanMachineSoftware(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                 TProgressBar &ProgressBar, TGroupItems &Group);

// Fills the engine's UninstallNames.
std::int32_t ScanUninstall(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group);

// To be called after ScanUninstall in the same scan: whatever UninstallNames does not
// hold, by Windows' own comparison of names, is a problem.
std::int32_t ScanARPCache(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group);

// The data name a file or folder that is missing.
struct TScanContext;
bool IsDeadUninstaller(const TScanContext &Context, std::u16string_view Data);

// The backup's line for a value of an uninstall entry. Of data that begin with a quote
// all quotes go, and the whole is put into one escaped pair.
std::u16string UninstallLine(std::u16string_view Name, std::u16string_view Data);

} // namespace hivesweep
