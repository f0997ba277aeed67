#include "ui/Rights.h"

namespace hivesweep {

bool HasMachineRights() { return true; }

} // namespace hivesweep
