// Whether the program may change what belongs to the whole computer.
#pragma once

namespace hivesweep {

bool HasMachineRights();

} // namespace hivesweep
