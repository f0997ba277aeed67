// The text of an INI file, understood as Windows does.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Profiles.h"

namespace hivesweep {

struct TIniLine {
  std::u16string_view Name;
  std::u16string_view Value; // with its quotes
  bool HasValue = false;     // there is a "="
};

// The lines of the first section of that name, without comments. They are parts of Text.
std::vector<TIniLine> IniLines(std::u16string_view Text, std::u16string_view Section);

// Makes the changes in the first section of that name. All else stays as it is.
void SetIniTexts(std::u16string &Text, std::u16string_view Section,
                 std::span<const TIniChange> Changes);

} // namespace hivesweep
