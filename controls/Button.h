// A push button. Enter presses it while it has the focus, or when it is the form's
// default button and no other one has.
#pragma once

#include "controls/Pressable.h"

namespace hivesweep {

class TButton : public TPressable {
public:
  using TPressable::TPressable;

  // Drawn as the one that Enter presses; the form's table makes it so.
  void SetDefault(bool Default);

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;

private:
  bool Default_ = false;
};

} // namespace hivesweep
