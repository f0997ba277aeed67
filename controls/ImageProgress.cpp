#include "controls/ImageProgress.h"

#include <algorithm>

namespace hivesweep {

TImageProgress::TImageProgress(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  MakeWindow(nullptr, 0);
}

void TImageProgress::Set(std::int32_t Min, std::int32_t Max, std::int32_t Position) {
  Min_ = Min;
  Max_ = Max;
  Position_ = Position;
  Update();
}

void TImageProgress::SetBounds(const TRect &Pixels) {
  TWindowControl::SetBounds(Pixels);
  Update();
}

void TImageProgress::Update() {
  const int Room = std::max(0, Bounds().Width - 2);
  // In 64 bits: two bounds can lie farther apart than 32 hold.
  const std::int64_t Range = std::int64_t{Max_} - Min_;
  const std::int64_t Done =
      std::clamp<std::int64_t>(std::int64_t{Position_} - Min_, 0, std::max<std::int64_t>(Range, 0));
  const int Filled = Range > 0 ? static_cast<int>(Done * Room / Range) : 0;
  if (Filled == Filled_)
    return;
  Filled_ = Filled;
  Invalidate();
}

void TImageProgress::Paint(TCanvas &Canvas) {
  const TRect Whole{0, 0, Bounds().Width, Bounds().Height};
  Canvas.Fill(Whole, TColorRole::Window);
  Canvas.Frame(Whole, TColorRole::Border);
  Canvas.Fill({1, 1, Filled_, Whole.Height - 2}, TColorRole::Accent);
}

} // namespace hivesweep
