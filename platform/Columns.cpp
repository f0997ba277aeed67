#include "platform/Columns.h"

#include <charconv>
#include <cstdlib>
#include <string_view>

namespace hivesweep {

int ColumnsOfEnvironment() {
  const char *const Setting = std::getenv("COLUMNS");
  const std::string_view Digits = Setting ? Setting : "";
  int Columns = 0;
  const auto [End, Error] = std::from_chars(Digits.data(), Digits.data() + Digits.size(), Columns);
  const bool Whole = Error == std::errc() && End == Digits.data() + Digits.size();
  return Whole && Columns > 0 && Columns < 10'000 ? Columns : 0;
}

} // namespace hivesweep
