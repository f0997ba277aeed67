#pragma once

#include <string_view>

#include "platform/Storage.h"

namespace hivesweep {

// Why the file can't be read; none when it can or is not there. An empty path is a file
// that is not there.
TError WhyUnreadable(TStorage &Storage, std::u16string_view Path);

} // namespace hivesweep
