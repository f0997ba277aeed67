// A box that is checked or not. Click, then MouseUp are told after it has changed.
#pragma once

#include "controls/Pressable.h"

namespace hivesweep {

class TCheckBox : public TPressable {
public:
  using TPressable::TPressable;

  bool Checked() const { return Checked_; }
  // Tells no handler.
  void SetChecked(bool Checked);

  bool Knows(TEvent Event) const override;
  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  void Click() override;
  TAnswer Receive(const TMessage &Message) override;

  // The box itself, anywhere.
  static void PaintBox(TCanvas &Canvas, const TRect &Square, bool Checked, bool Enabled);

private:
  bool Checked_ = false;
};

} // namespace hivesweep
