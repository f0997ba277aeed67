// What a button and a check box share: a window of the system's own button class, so that
// aids for the blind find one, drawn in our look and pressed by the space bar.
#pragma once

#include "controls/WindowControl.h"

namespace hivesweep {

class TPressable : public TWindowControl {
public:
  TPressable(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  TAnswer Reflected(const TMessage &Message) override;

protected:
  bool KeyDown(unsigned Key) override;
};

} // namespace hivesweep
