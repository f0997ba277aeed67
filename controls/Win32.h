// The system's headers for the sources of this folder.
#pragma once

#include "platform/win32/Win32.h"

#include <commctrl.h>

#include "controls/Geometry.h"

namespace hivesweep {

inline RECT ToSystem(const TRect &Rect) {
  return {Rect.Left, Rect.Top, Rect.Right(), Rect.Bottom()};
}
inline TRect FromSystem(const RECT &Rect) {
  return {Rect.left, Rect.top, Rect.right - Rect.left, Rect.bottom - Rect.top};
}

// The point that a mouse message carries: signed halves, as a second screen may
// lie to the left.
inline TPoint PointOf(std::intptr_t LParam) {
  return {static_cast<short>(LOWORD(LParam)), static_cast<short>(HIWORD(LParam))};
}

} // namespace hivesweep
