// Pictures of windows.
#pragma once

#include <string>

#include "controls/Form.h"

namespace hivesweep {

// Writes what the screen shows of the form, its frame included, as a BMP file. Throws
// std::runtime_error when that can't be done.
void SavePicture(const TForm &Form, const std::u16string &Path);

} // namespace hivesweep
