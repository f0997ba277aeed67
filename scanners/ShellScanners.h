// The scanners of what the shell shows and plays: shortcuts and shell folders, sounds,
// and the order of the start menu.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

// Shortcut files of the desktop, the start menu and their like whose target is gone.
std::int32_t ScanShortcutFiles(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                               TProgressBar &ProgressBar, TGroupItems &Group);

// Special folders that are not there.
std::int32_t ScanShellFolders(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group);

// Events whose sound file is gone.
std::int32_t ScanSounds(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                        TGroupItems &Group);

// The order of start menu folders that are gone.
std::int32_t ScanStartMenu(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group);

} // namespace hivesweep
