// What every benchmark needs: a clock that it can trust and one way to print a result.
#pragma once

#include <chrono>
#include <cstdio>

namespace hivesweep {

// Runs Work and answers how many seconds it took.
template <typename TWork> double SecondsFor(TWork Work) {
  const auto Start = std::chrono::steady_clock::now();
  Work();
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - Start).count();
}

inline void PrintRatio(const char *What, double Ratio, const char *Goal) {
  std::printf("%-62s %8.2f   (%s)\n", What, Ratio, Goal);
}

} // namespace hivesweep
