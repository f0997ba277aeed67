// Which object stands behind a window, and what handled its messages before.
#pragma once

#include "controls/Win32.h"
#include "controls/WindowControl.h"

namespace hivesweep {

struct TWindowMap {
  // The name of the window class of ours.
  static const wchar_t *PlainClass();
  // From now on the object receives the window's messages.
  static void Attach(HWND Window, TWindowControl &Object);
  // The system's class gets its messages back.
  static void Detach(HWND Window);
  static TWindowControl *Find(HWND Window);
  static std::intptr_t CallPrevious(HWND Window, const TMessage &Message);
};

} // namespace hivesweep
