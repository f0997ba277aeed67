// The main window, described.
#pragma once

#include <string>
#include <string_view>

#include "controls/FormTable.h"

namespace hivesweep {

// The categories of problems: the summary, which is all of them, and one for each area.
inline constexpr int SummaryCategory = 1;
inline constexpr int CategoryCount = 18;

// The name of a family's member: NameOf(u"lab_", 7) is "lab_7".
std::u16string NameOf(std::u16string_view Family, int Category);

// The path under a problem's details is a link; a description of a category stands in
// the same label. These are its two places in the details area.
inline constexpr TRect DescriptionPlace{22, 55, 506, 71};
inline constexpr TRect LinkPlace{93, 96, 435, 16};

TFormTable MainTable();

} // namespace hivesweep
