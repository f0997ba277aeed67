#include "controls/Panel.h"

#include "controls/Win32.h"

namespace hivesweep {

namespace {
constexpr int CaptionUnits = 10; // where a group's caption begins
}

TPanel::TPanel(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  MakeWindow(nullptr, 0, WS_EX_CONTROLPARENT);
}

void TPanel::SetBordered(bool Bordered) {
  Bordered_ = Bordered;
  Invalidate();
}

void TPanel::Paint(TCanvas &Canvas) {
  TWindowControl::Paint(Canvas);
  if (Bordered_)
    Canvas.Frame({0, 0, Bounds().Width, Bounds().Height}, TColorRole::Border);
}

TGroupBox::TGroupBox(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  MakeWindow(nullptr, 0, WS_EX_CONTROLPARENT);
}

TSize TGroupBox::Needed(int Width) const {
  static_cast<void>(Width);
  const TSize Size = Look().Measure(Text(), TFontRole::Bold);
  return {Size.Width + 2 * Look().Scale(CaptionUnits + 4), Size.Height};
}

void TGroupBox::Paint(TCanvas &Canvas) {
  TWindowControl::Paint(Canvas);
  const TSize Size = Look().Measure(Text(), TFontRole::Bold);
  const int Top = Size.Height / 2;
  Canvas.Frame({0, Top, Bounds().Width, Bounds().Height - Top}, TColorRole::Border);
  const int Left = Look().Scale(CaptionUnits), Air = Look().Scale(4);
  Canvas.Fill({Left - Air, 0, Size.Width + 2 * Air, Size.Height}, Ground());
  TTextStyle Form;
  Form.Font = TFontRole::Bold;
  Form.Color = TColorRole::Heading;
  Canvas.Text({Left, 0, Size.Width, Size.Height}, Text(), Form);
}

} // namespace hivesweep
