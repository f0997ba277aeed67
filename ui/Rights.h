// Whether the program may change what belongs to the whole computer.
#pragma once

namespace hivesweep {

// The user who runs it is an administrator here and now: one whose rights were taken off
// this process, as user account control does, is none. False when the system can't say.
bool HasMachineRights();

} // namespace hivesweep
