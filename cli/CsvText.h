#pragma once

#include <string>
#include <vector>

namespace hivesweep {

// One record of RFC 4180 in UTF-8, with its line end. Nothing in it can make a terminal do
// anything.
std::string CsvRecord(const std::vector<std::u16string> &Fields);

} // namespace hivesweep
