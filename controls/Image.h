// A picture of an image list, without a window.
#pragma once

#include "controls/Control.h"

namespace hivesweep {

class TImageList;

class TImage : public TControl {
public:
  using TControl::TControl;

  // Images is borrowed; null and a number that is not there show nothing.
  void SetImage(const TImageList *Images, int Number);
  int Number() const { return Number_; }

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  void VisitTexts(const TTextVisitor &Visit) override { static_cast<void>(Visit); }

private:
  const TImageList *Images_ = nullptr;
  int Number_ = -1;
};

} // namespace hivesweep
