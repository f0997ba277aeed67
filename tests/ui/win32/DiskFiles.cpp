#include "tests/ui/DiskFiles.h"

#include <utility>

#include "platform/Platform.h"

namespace hivesweep {

std::unique_ptr<TFileSystem> RealFiles() { return std::move(MakeLivePlatform()->Files); }

} // namespace hivesweep
