// The time family of the seam.
#pragma once

#include <cstdint>

namespace hivesweep {

struct TLocalTime {
  int Year = 0;
  int Month = 0;
  int Day = 0;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
};

class TClock {
public:
  TClock() = default;
  TClock(const TClock &) = delete;
  TClock &operator=(const TClock &) = delete;
  virtual ~TClock() = default;

  virtual TLocalTime Now() = 0;
  virtual void Pause(std::uint32_t Milliseconds) = 0;
};

} // namespace hivesweep
