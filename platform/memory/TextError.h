#pragma once

#include <string>

namespace hivesweep {

// What is wrong with a text that was to be loaded, and on which of its lines
// (counted from 1).
struct TTextError {
  std::size_t Line = 0;
  std::u16string Message;
};

} // namespace hivesweep
