#pragma once

#include <string>

#include "repair/RegistryClean.h"

namespace hivesweep {

// The backup of that name, which is in UTF-8. Throws TFailure when there is none.
TBackupEntry FindBackup(const TRegistryClean &Data, const std::string &Name);

} // namespace hivesweep
