#pragma once

#include <ctime>

#include "platform/Clock.h"

namespace hivesweep {

inline TLocalTime LocalTime(std::time_t Seconds) {
  std::tm Parts = {};
  localtime_r(&Seconds, &Parts);
  return {Parts.tm_year + 1900, Parts.tm_mon + 1, Parts.tm_mday,
          Parts.tm_hour,        Parts.tm_min,     Parts.tm_sec};
}

} // namespace hivesweep
