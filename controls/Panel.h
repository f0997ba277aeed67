// Grounds for other controls: a plain one, and one with a frame and a caption.
#pragma once

#include "controls/WindowControl.h"

namespace hivesweep {

class TPanel : public TWindowControl {
public:
  TPanel(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  void SetBordered(bool Bordered);
  void Paint(TCanvas &Canvas) override;

private:
  bool Bordered_ = false;
};

class TGroupBox : public TWindowControl {
public:
  TGroupBox(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
};

} // namespace hivesweep
