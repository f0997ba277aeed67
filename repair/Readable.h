#pragma once

#include <string_view>

#include "platform/Storage.h"

namespace hivesweep {

// Nothing when the file can be read or is not there; else why it can't, as a sentence that
// names it. An empty path is a file that is not there.
TDiskError WhyUnreadable(TStorage &Storage, std::u16string_view Path);

} // namespace hivesweep
