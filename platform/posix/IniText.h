// The text of an INI file, understood as Windows does.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

struct TIniLine {
  std::u16string_view Name;
  std::u16string_view Value; // with its quotes
  bool HasValue = false;     // there is a "="
};

// The lines of the first section of that name, without comments. They are parts of Text.
std::vector<TIniLine> IniLines(std::u16string_view Text, std::u16string_view Section);

// Sets the key's text, or deletes the key when there is none. All else stays as it is.
void SetIniText(std::u16string &Text, std::u16string_view Section, std::u16string_view Key,
                std::optional<std::u16string_view> Value);

} // namespace hivesweep
