// The real disk behind the seam, also where the program itself needs none.
#pragma once

#include <memory>

#include "platform/FileSystem.h"

namespace hivesweep {

std::unique_ptr<TFileSystem> RealFiles();

} // namespace hivesweep
