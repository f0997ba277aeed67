// Grades the problems of a finished scan.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "engine/Areas.h"
#include "engine/ProblemList.h"

namespace hivesweep {

// In the user's language.
struct TRiskTexts {
  std::u16string High = u"High-Risk";
  std::u16string Medium = u"Medium-Risk";
  std::u16string Low = u"Low-Risk";
};

// The risk of a problem is that of its area.
TRisk RiskOf(const TItemInfo &Item);

// Gives each problem of the view its risk text and icon (20 high, 19 medium, 18 low)
// and takes the selection off the high ones; answers how many stay selected. A
// problem whose key is on the ignore list is left as it is and not counted. GoesOn is
// asked before each problem and may handle messages: once it answers false, the rest
// is graded without a look at the ignore list, and so not selected. Gives up when a handler
// has changed the list.
std::int32_t GradeRisks(TListViewManage &Problems, const TRiskTexts &Texts,
                        const std::function<bool(std::u16string_view KeyPath)> &IsIgnored,
                        const std::function<bool()> &GoesOn);

} // namespace hivesweep
