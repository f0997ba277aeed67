#include "controls/CheckBox.h"

#include <algorithm>

#include "controls/Win32.h"

namespace hivesweep {

namespace {
constexpr int BoxUnits = 13;
constexpr int GapUnits = 6;
} // namespace

void TCheckBox::SetChecked(bool Checked) {
  Checked_ = Checked;
  Invalidate();
}

bool TCheckBox::Knows(TEvent Event) const {
  return Event == TEvent::MouseUp || TPressable::Knows(Event);
}

TSize TCheckBox::Needed(int Width) const {
  static_cast<void>(Width);
  const TSize Size = Look().Measure(Text(), TFontRole::Body, 0, true);
  return {Size.Width + Look().Scale(BoxUnits + 2 * GapUnits),
          std::max(Size.Height, Look().Scale(BoxUnits)) + Look().Scale(2)};
}

void TCheckBox::PaintBox(TCanvas &Canvas, const TRect &Square, bool Checked, bool Enabled) {
  const TColorRole Line = Enabled ? TColorRole::Accent : TColorRole::QuietText;
  Canvas.Fill(Square, TColorRole::Window);
  Canvas.Frame(Square, Line);
  if (Checked)
    Canvas.CheckMark(Square, Line);
}

void TCheckBox::Paint(TCanvas &Canvas) {
  TPressable::Paint(Canvas);
  const int Extent = Look().Scale(BoxUnits);
  PaintBox(Canvas, {0, (Bounds().Height - Extent) / 2, Extent, Extent}, Checked_, Enabled());
  const int Left = Extent + Look().Scale(GapUnits);
  TTextStyle Form;
  Form.Prefix = true;
  Form.Color = Enabled() ? Color() : TColorRole::QuietText;
  const TRect Place{Left, 0, Bounds().Width - Left, Bounds().Height};
  Canvas.Text(Place, Text(), Form);
  if (ShowsFocus())
    Canvas.FocusFrame({Left - Look().Scale(2), 0, Place.Width, Place.Height});
}

void TCheckBox::Click() {
  SetChecked(!Checked_);
  Fire(TEvent::Click);
  Fire(TEvent::MouseUp);
}

TAnswer TCheckBox::Receive(const TMessage &Message) {
  // What other programs (aids for the blind) ask a check box.
  if (Message.Id == BM_GETCHECK)
    return Checked_ ? BST_CHECKED : BST_UNCHECKED;
  return TPressable::Receive(Message);
}

} // namespace hivesweep
