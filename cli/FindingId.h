// A name for a finding, by which a script can know it again.
#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>

#include "engine/ProblemList.h"

namespace hivesweep {

// Names the findings of one scan, in their order.
class TFindingIds {
public:
  // 16 hexadecimal digits that depend on the area, the key, the value's name and the
  // data alone, unit by unit: the same finding has the same name in every scan. When
  // a scan finds the same thing twice, the later ones get "-2", "-3" behind it.
  std::string Next(int Area, const TItemInfo &Item);

private:
  std::unordered_map<std::uint64_t, int> Seen_;
};

} // namespace hivesweep
