// Makes the n-th call of the memory hosts fail, so that a test can break every
// call of a run, one after another.
#pragma once

#include <cstdint>

namespace hivesweep {

class TFaults {
public:
  // Calls are counted from 1, over all hosts that share this object; 0: none fails.
  void FailCall(std::uint64_t Number) { Chosen_ = Number; }
  std::uint64_t Calls() const { return Counted_; }
  void Reset() { Counted_ = 0; }

  // Counts a call; true when it is the one to fail.
  bool Next() { return ++Counted_ == Chosen_; }

private:
  std::uint64_t Counted_ = 0;
  std::uint64_t Chosen_ = 0;
};

} // namespace hivesweep
