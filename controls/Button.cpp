#include "controls/Button.h"

#include "controls/Win32.h"

namespace hivesweep {

TButton::TButton(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  // The system's own class, so that aids for the blind find a button here.
  MakeWindow(L"BUTTON", BS_OWNERDRAW | WS_TABSTOP);
}

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
  TWindowControl::Paint(Canvas);
  const TRect Whole{0, 0, Bounds().Width, Bounds().Height};
  const bool Filled = Default_ && Enabled() && !Pressed();
  const TColorRole Inside = Filled      ? TColorRole::Accent
                            : Pressed() ? TColorRole::ButtonDown
                            : Hovered() ? TColorRole::ButtonHover
                                        : TColorRole::Button;
  Canvas.Box(Whole, Inside, Enabled() && Default_ ? TColorRole::Accent : TColorRole::Border);
  TTextForm Form;
  Form.Align = TAlign::Center;
  Form.Prefix = true;
  Form.Color = !Enabled() ? TColorRole::QuietText
               : Filled   ? TColorRole::AccentText
                          : TColorRole::Text;
  Canvas.Text(Whole, Text(), Form);
  if (ShowsFocus())
    Canvas.FocusFrame(Whole.Inner(Look().Scale(3)));
}

bool TButton::KeyDown(unsigned Key) {
  if (Key != VK_SPACE)
    return false;
  Click();
  return true;
}

TAnswer TButton::Reflected(const TMessage &Message) {
  // The system's class asks to be drawn at once; it is drawn with all else, instead.
  if (Message.Id != WM_DRAWITEM)
    return std::nullopt;
  Invalidate();
  return 1;
}

} // namespace hivesweep
