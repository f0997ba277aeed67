// The time family of the seam.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace hivesweep {

struct TLocalTime {
  int Year = 0;
  int Month = 0;
  int Day = 0;
  int Hour = 0;
  int Minute = 0;
  int Second = 0;
  // The check takes the 0 that the compiler compares with for a null pointer.
  auto operator<=>(const TLocalTime &) const = default; // NOLINT(modernize-use-nullptr)
};

class TClock {
public:
  TClock() = default;
  TClock(const TClock &) = delete;
  TClock &operator=(const TClock &) = delete;
  virtual ~TClock() = default;

  virtual TLocalTime Now() = 0;

  // What the user's locale puts between the parts of a short date; "/" on a system
  // without one.
  virtual std::u16string DateSeparator() = 0;

  virtual void Pause(std::uint32_t Milliseconds) = 0;
};

} // namespace hivesweep
