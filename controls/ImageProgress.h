// A progress bar between two bounds; a position outside shows it empty or full.
#pragma once

#include <cstdint>

#include "controls/WindowControl.h"

namespace hivesweep {

class TImageProgress : public TWindowControl {
public:
  TImageProgress(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  // Redraws only when the picture changes: may be called for every step.
  void Set(std::int32_t Min, std::int32_t Max, std::int32_t Position);
  // The pixels of the bar that are filled.
  int Filled() const { return Filled_; }

  void Paint(TCanvas &Canvas) override;
  void SetBounds(const TRect &Pixels) override;
  void VisitTexts(const TTextVisitor &Visit) override { static_cast<void>(Visit); }

private:
  void Update();

  std::int32_t Min_ = 0;
  std::int32_t Max_ = 100;
  std::int32_t Position_ = 0;
  int Filled_ = 0;
};

} // namespace hivesweep
