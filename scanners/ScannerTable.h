// Every scanner there is, by area, in the order in which a scan calls them. A new
// scanner is a new row.
#pragma once

#include <span>

#include "engine/ScanRegistry.h"

namespace hivesweep {

std::span<const TScannerRow> ScannerTable();

} // namespace hivesweep
