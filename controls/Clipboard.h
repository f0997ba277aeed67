// What the user copies from a form.
#pragma once

#include <string_view>

namespace hivesweep {

class TForm;

// Puts the text, which holds no zeros, on the clipboard. False when the system does not give
// it the clipboard: another program may hold that for a moment.
bool CopyText(const TForm &From, std::u16string_view Text);

} // namespace hivesweep
