#include "controls/StatusBar.h"

#include <algorithm>

#include "controls/Form.h"
#include "controls/Win32.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {
constexpr int AirUnits = 8;
}

TStatusBar::TStatusBar(TForm *Owner, TWindowControl *Parent, std::u16string Name,
                       std::vector<TColumn> Panels)
    : TWindowControl(Owner, Parent, std::move(Name)), Panels_(std::move(Panels)) {
  MakeWindow(nullptr, 0);
}

const std::u16string &TStatusBar::PanelText(int Index) const {
  return Panels_.at(static_cast<std::size_t>(Index)).Caption;
}

void TStatusBar::SetPanelText(int Index, std::u16string_view Text) {
  TColumn &Panel = Panels_.at(static_cast<std::size_t>(Index));
  if (Panel.Caption == Text)
    return;
  const int Before = PanelWidth(Panel);
  Panel.Caption = Text;
  Invalidate();
  // For those who read a window's text: all panels.
  std::u16string All;
  for (const TColumn &Each : Panels_)
    All += (All.empty() ? u"" : u"; ") + Each.Caption;
  SetWindowTextW(Handle(), Wide(All));
  if (PanelWidth(Panel) != Before)
    RequestLayout();
}

void TStatusBar::AddPanel(std::u16string_view Text) {
  Panels_.push_back({u"", 0});
  Shortens_ = true;
  SetPanelText(static_cast<int>(Panels_.size()) - 1, Text);
  RequestLayout();
}

int TStatusBar::TextWidth(const TColumn &Panel) const {
  return Look().Measure(Panel.Caption, TFontRole::Body).Width + Look().Scale(2 * AirUnits);
}

int TStatusBar::PanelWidth(const TColumn &Panel) const {
  return std::max(Look().Scale(Panel.Width), TextWidth(Panel));
}

TRect TStatusBar::PanelBounds(int Index) const {
  const auto Last = static_cast<int>(Panels_.size()) - 1;
  const int Whole = Bounds().Width - Grip().Width;
  // What the last one lacks is taken from those before it, the nearest first.
  int Lacking = TextWidth(Panels_.back()) - Whole;
  std::vector<int> Widths;
  for (const TColumn &Panel : Panels_)
    Widths.push_back(PanelWidth(Panel));
  for (int I = 0; I < Last; ++I)
    Lacking += Widths[static_cast<std::size_t>(I)];
  TRect Place{0, 0, 0, Bounds().Height};
  for (int I = Last - 1; I >= 0 && Lacking > 0; --I) {
    int &Width = Widths[static_cast<std::size_t>(I)];
    const int Given = std::min(Lacking, Width - TextWidth(Panels_[static_cast<std::size_t>(I)]));
    Width -= Given;
    Lacking -= Given;
  }
  for (int I = 0; I <= Index; ++I) {
    Place.Left += Place.Width;
    Place.Width = Widths.at(static_cast<std::size_t>(I));
  }
  if (Index == Last)
    Place.Width = std::max(0, Whole - Place.Left);
  return Place;
}

std::u16string TStatusBar::ShownHint() const {
  const auto Last = static_cast<int>(Panels_.size()) - 1;
  return Shortens_ && PanelBounds(Last).Width < TextWidth(Panels_.back()) ? PanelText(Last)
                                                                          : Hint();
}

TSize TStatusBar::Needed(int Width) const {
  static_cast<void>(Width);
  TSize Size{Bounds().Height,
             Look().Measure(u"X", TFontRole::Body).Height + Look().Scale(AirUnits)};
  // The panels' widths are wishes, their texts are not.
  for (const TColumn &Panel : Panels_)
    if (!Shortens_ || &Panel != &Panels_.back())
      Size.Width += TextWidth(Panel);
  return Size;
}

TRect TStatusBar::Grip() const {
  const LONG Style = GetWindowLongW(Owner()->Handle(), GWL_STYLE);
  const bool Can = (Style & (WS_THICKFRAME | WS_MAXIMIZE)) == WS_THICKFRAME;
  const int Extent = Can ? Bounds().Height : 0;
  return {Bounds().Width - Extent, 0, Extent, Bounds().Height};
}

void TStatusBar::Paint(TCanvas &Canvas) {
  const TRect Whole{0, 0, Bounds().Width, Bounds().Height};
  Canvas.Fill(Whole, Ground());
  Canvas.Fill({0, 0, Whole.Width, 1}, TColorRole::Border);
  const int Air = Look().Scale(AirUnits);
  for (int I = 0; I < static_cast<int>(Panels_.size()); ++I) {
    const TRect Place = PanelBounds(I);
    TTextStyle Style;
    Style.Ellipsis = true;
    Canvas.Text({Place.Left + Air, 1, Place.Width - 2 * Air, Place.Height - 1}, PanelText(I),
                Style);
    if (I > 0)
      Canvas.Fill({Place.Left, Air / 2, 1, Place.Height - Air}, TColorRole::Border);
  }
  const int Dot = Look().Scale(2);
  const TRect Corner = Grip();
  for (int Row = 0; Corner.Width > 0 && Row < 3; ++Row)
    for (int Column = 0; Column <= Row; ++Column)
      Canvas.Fill({Corner.Right() - (Column + 1) * 2 * Dot, Corner.Bottom() - (3 - Row) * 2 * Dot,
                   Dot, Dot},
                  TColorRole::Border);
}

TAnswer TStatusBar::Receive(const TMessage &Message) {
  POINT Point{PointOf(Message.LParam).X, PointOf(Message.LParam).Y};
  switch (Message.Id) {
  // The grip's corner belongs to the form's frame: the bar lets the mouse through.
  case WM_NCHITTEST:
    ScreenToClient(Handle(), &Point);
    if (Grip().Contains({static_cast<int>(Point.x), static_cast<int>(Point.y)}))
      return HTBOTTOMRIGHT;
    break;
  case WM_NCLBUTTONDOWN:
    if (Message.WParam == HTBOTTOMRIGHT)
      return SendMessageW(Owner()->Handle(), WM_NCLBUTTONDOWN, Message.WParam, Message.LParam);
    break;
  default:
    break;
  }
  return TWindowControl::Receive(Message);
}

void TStatusBar::VisitTexts(const TTextVisitor &Visit) {
  for (int I = 0; I < static_cast<int>(Panels_.size()); ++I) {
    std::u16string Text = PanelText(I);
    Visit(u"Panels[" + ToDecimal(static_cast<unsigned>(I)) + u"].Text", Text);
    SetPanelText(I, Text);
  }
}

} // namespace hivesweep
