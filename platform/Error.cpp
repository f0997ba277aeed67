#include "platform/Error.h"

#include <utility>

namespace hivesweep {

TError Because(TError Cause, TErrorCode Code, std::u16string_view Subject) {
  if (!Cause)
    return Cause;
  TError Out{Code, std::u16string(Subject)};
  Out.Cause.push_back(std::move(Cause));
  return Out;
}

} // namespace hivesweep
