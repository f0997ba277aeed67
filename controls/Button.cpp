#include "controls/Button.h"

namespace hivesweep {

void TButton::SetDefault(bool Default) {
  Default_ = Default;
  Invalidate();
}

TSize TButton::Needed(int Width) const {
  static_cast<void>(Width);
  const TSize Size = Look().Measure(Text(), TFontRole::Body, 0, true);
  return {Size.Width + 2 * Look().Scale(12), Size.Height + 2 * Look().Scale(4)};
}

void TButton::Paint(TCanvas &Canvas) {
  TPressable::Paint(Canvas);
  const TRect Whole{0, 0, Bounds().Width, Bounds().Height};
  const bool Filled = Default_ && Enabled() && !Pressed();
  const TColorRole Inside = Filled      ? TColorRole::Accent
                            : Pressed() ? TColorRole::ButtonDown
                            : Hovered() ? TColorRole::ButtonHover
                                        : TColorRole::Button;
  Canvas.Box(Whole, Inside, Enabled() && Default_ ? TColorRole::Accent : TColorRole::Border);
  TTextStyle Form;
  Form.Align = TAlign::Center;
  Form.Prefix = true;
  Form.Color = !Enabled() ? TColorRole::QuietText
               : Filled   ? TColorRole::AccentText
                          : TColorRole::Text;
  Canvas.Text(Whole, Text(), Form);
  if (ShowsFocus())
    Canvas.FocusFrame(Whole.Inner(Look().Scale(3)));
}

} // namespace hivesweep
