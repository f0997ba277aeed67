// The program's icons, in the lists of images that its forms show.
#pragma once

#include "controls/ImageList.h"
#include "ui/Icons.h"

namespace hivesweep {

// Takes all icons into an empty list, each under its number (ui/Icons.h): those that a form
// below has in the same size, or else the program's resources. To be called before the
// list is given to a control. Throws std::runtime_error when the program lacks one.
void FillImages(TImageList &Images);

} // namespace hivesweep
