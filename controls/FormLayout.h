// Lays out the controls of a form: first all widths, then, as wrapped texts now know
// theirs, all heights.
#pragma once

#include "controls/Geometry.h"

namespace hivesweep {

class TWindowControl;

// The least size of the inside of Root, of the given design size (both in pixels), in
// which nothing is cut when its width is ActualWidth or the least one, if that is larger.
// Places nothing.
TSize LeastSize(const TWindowControl &Root, const TSize &Design, int ActualWidth);

// Gives all controls in Root their places for an inside of the size Actual.
void PlaceControls(TWindowControl &Root, const TSize &Design, const TSize &Actual);

} // namespace hivesweep
