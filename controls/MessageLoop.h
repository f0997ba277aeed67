// The loops that bring the system's messages to the windows.
#pragma once

#include <exception>
#include <functional>
#include <memory>

#include "platform/Messages.h"

namespace hivesweep {

class TForm;

// Waits for messages and handles them until Done, which is asked after each one. What
// a handler threw comes out here. False when the program is to end: the request to
// end stays in the queue for the loops outside.
bool LoopUntil(const std::function<bool()> &Done);

// Handles what waits, and what comes of it, and returns. What a handler threw comes
// out here.
void PumpMessages();

// Shows the form and runs until it is closed. Answers the program's exit code.
int RunProgram(TForm &Main);

// The family of the seam for a program with windows: its pump also knows the keys
// that lead from control to control.
std::unique_ptr<TMessages> MakeWindowMessages();

// For the window procedure: remembers the first error until a loop can throw it.
void KeepForLoop(std::exception_ptr Error);

} // namespace hivesweep
