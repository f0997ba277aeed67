// A push button. Enter presses it while it has the focus, or when it is the form's
// default button and no other one has.
#pragma once

#include "controls/WindowControl.h"

namespace hivesweep {

class TButton : public TWindowControl {
public:
  TButton(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  // Drawn as the one that Enter presses; the form's table makes it so.
  void SetDefault(bool Default);

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  TAnswer Reflected(const TMessage &Message) override;

protected:
  bool KeyDown(unsigned Key) override;

private:
  bool Default_ = false;
};

} // namespace hivesweep
