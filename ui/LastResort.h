// What becomes of an error that nothing in the program handles.
#pragma once

#include <functional>

namespace hivesweep {

// Runs the program and answers its exit code. An exception that comes out of it is told in
// a message box, and the exit code is 1.
int TellErrors(const std::function<int()> &Program);

} // namespace hivesweep
