// What more than one family of scanners asks of a path.
#pragma once

#include <cstdint>
#include <string_view>

#include "scanners/ValueScan.h"

namespace hivesweep {

// A path in drive form on a fixed drive: the only kind that most rules look up.
bool IsLocalPath(TScanDisk &Disk, std::u16string_view Path);

// The command or path names neither a file nor, where it has no dot and came with no
// more than one pair of quotes, a folder. Quotes: those of the text as the registry
// has it. What has a dot anywhere but before three letters may be both, and is not
// gone.
bool IsGoneFileOrFolder(const TScanContext &Context, std::u16string_view Path, std::int32_t Quotes);

} // namespace hivesweep
