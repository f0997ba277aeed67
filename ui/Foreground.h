// Brings a window to the front although another program has the user's attention.
#pragma once

#include "controls/SystemTypes.h"

namespace hivesweep {

// Restores the window when it is minimised, and makes it the foreground window against the
// system's foreground lock, whose time-out is afterwards what it was before. Answers
// whether it is the foreground window now.
bool ForceForeground(HWND__ *Window);

} // namespace hivesweep
