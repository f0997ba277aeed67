// The scanners of the shell's lists of recently used files. They look for no file:
// every entry of theirs is one that the user may want to be rid of.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

extern const TScanner ScanLastVisitedMRU;
extern const TScanner ScanOpenSaveMRU;

} // namespace hivesweep
