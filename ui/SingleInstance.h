// One running instance of the program: a second start brings the first one's window to
// the front and ends. Programs know each other by the name of their file, so a copy
// under another name is a program of its own.
#pragma once

#include "controls/SystemTypes.h"

namespace hivesweep {

// Before anything else is made. False when the program is to end at once and without a
// word: another instance runs, and was told, or the system keeps the program from finding
// out. True: this is the instance, and a later start is heard as soon as messages are
// handled.
bool InitSingleInstance();

// The window that a later start brings to the front, while this lives: restored when it is
// minimised; when a dialog is open over it, that dialog. A start that was heard before
// comes to its effect at once.
class TMainWindow {
public:
  explicit TMainWindow(HWND__ *Window);
  TMainWindow(const TMainWindow &) = delete;
  TMainWindow &operator=(const TMainWindow &) = delete;
  ~TMainWindow();
};

// Lets go of what InitSingleInstance made; nothing else is needed before another one.
void DoneSingleInstance();

} // namespace hivesweep
