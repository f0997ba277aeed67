#include "controls/LabelNote.h"

#include <algorithm>

#include "controls/Win32.h"
#include "platform/Text.h"

namespace hivesweep {

TLabelNote::TLabelNote(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  MakeWindow(nullptr, WS_TABSTOP);
}

void TLabelNote::SetItems(std::vector<std::u16string> Items) {
  Items_ = std::move(Items);
  Index_ = -1;
  Invalidate();
  RequestLayout();
}

int TLabelNote::LineHeight() const {
  return Look().Measure(u"X", TFontRole::Link).Height + Look().Scale(4);
}

TSize TLabelNote::Needed(int Width) const {
  static_cast<void>(Width);
  TSize Size{0, LineHeight() * static_cast<int>(Items_.size())};
  for (const std::u16string &Item : Items_)
    Size.Width = std::max(Size.Width, Look().Measure(Item, TFontRole::Link).Width);
  return Size;
}

void TLabelNote::Paint(TCanvas &Canvas) {
  TWindowControl::Paint(Canvas);
  TTextStyle Form;
  Form.Font = TFontRole::Link;
  Form.Color = TColorRole::Heading;
  TRect Line{0, 0, Bounds().Width, LineHeight()};
  for (const std::u16string &Item : Items_) {
    Canvas.Text(Line, Item, Form);
    Line.Top += Line.Height;
  }
  if (ShowsFocus() && !Items_.empty())
    Canvas.FocusFrame({0, std::max(Index_, 0) * Line.Height, Line.Width, Line.Height});
}

TAnswer TLabelNote::Receive(const TMessage &Message) {
  if (Message.Id == WM_GETDLGCODE)
    return DLGC_WANTARROWS;
  if (Message.Id == WM_LBUTTONDOWN) {
    const int Pressed = PointOf(Message.LParam).Y / LineHeight();
    if (Pressed >= static_cast<int>(Items_.size()))
      return 0;
    Index_ = Pressed;
  }
  return TWindowControl::Receive(Message);
}

bool TLabelNote::KeyDown(unsigned Key) {
  const int Last = static_cast<int>(Items_.size()) - 1;
  if (Last < 0 || (Key != VK_SPACE && Key != VK_UP && Key != VK_DOWN))
    return false;
  const int Step = Key == VK_UP ? -1 : Key == VK_DOWN ? 1 : 0;
  Index_ = std::clamp(std::max(Index_, 0) + Step, 0, Last);
  Invalidate();
  if (Key == VK_SPACE)
    Click();
  return true;
}

void TLabelNote::VisitTexts(const TTextVisitor &Visit) {
  std::vector<std::u16string> Items = Items_;
  for (std::size_t I = 0; I < Items.size(); ++I)
    Visit(u"Items[" + ToDecimal(I) + u"].Caption", Items[I]);
  if (Items != Items_)
    SetItems(std::move(Items));
}

} // namespace hivesweep
