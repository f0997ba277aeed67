#include "controls/ToolBar.h"

#include <algorithm>

#include "controls/Form.h"
#include "controls/ImageList.h"
#include "controls/Menus.h"
#include "controls/Win32.h"

namespace hivesweep {

namespace {
constexpr int AirUnits = 8;
constexpr int ArrowUnits = 14;
constexpr int LineUnits = 9;
constexpr int RimUnits = 4;
} // namespace

TToolBar::TToolBar(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  MakeWindow(nullptr, WS_TABSTOP);
}

void TToolBar::ItemsChanged() {
  Invalidate();
  RequestLayout();
}

int TToolBar::ArrowWidth(const TMenuItem &Item) const {
  return Item.Items().empty() ? 0 : Look().Scale(ArrowUnits);
}

int TToolBar::ItemWidth(const TMenuItem &Item) const {
  if (!Item.Visible())
    return 0;
  if (Item.IsLine())
    return Look().Scale(LineUnits);
  const int Text = Look().Measure(Item.Caption(), TFontRole::Body, 0, true).Width;
  const int Icon = Item.Images() ? Item.Images()->Extent() : 0;
  return std::max(Text, Icon) + 2 * Look().Scale(AirUnits) + ArrowWidth(Item);
}

TRect TToolBar::ItemBounds(const TMenuItem &Item) const {
  const int Rim = Look().Scale(RimUnits);
  int Left = Rim;
  for (const TMenuItem *Each : Items_) {
    const int Width = ItemWidth(*Each);
    if (Each == &Item)
      return {Left, Rim, Width, Bounds().Height - 2 * Rim};
    Left += Width;
  }
  return {};
}

TSize TToolBar::Needed(int Width) const {
  static_cast<void>(Width);
  const int Rim = Look().Scale(RimUnits);
  TSize Size{2 * Rim, 0};
  int Icon = 0;
  for (const TMenuItem *Item : Items_) {
    Size.Width += ItemWidth(*Item);
    if (Item->Images())
      Icon = std::max(Icon, Item->Images()->Extent() + Rim);
  }
  Size.Height = Icon + Look().Measure(u"X", TFontRole::Body).Height + 5 * Rim;
  return Size;
}

void TToolBar::Paint(TCanvas &Canvas) {
  TWindowControl::Paint(Canvas);
  Canvas.Fill({0, Bounds().Height - 1, Bounds().Width, 1}, TColorRole::Border);
  for (const TMenuItem *Item : Items_)
    if (Item->Visible())
      PaintItem(Canvas, *Item);
}

void TToolBar::PaintItem(TCanvas &Canvas, const TMenuItem &Item) {
  TRect Place = ItemBounds(Item);
  const int Rim = Look().Scale(RimUnits);
  if (Item.IsLine()) {
    Canvas.Fill({Place.Left + Place.Width / 2, Place.Top + Rim, 1, Place.Height - 2 * Rim},
                TColorRole::Border);
    return;
  }
  if (Item.Enabled() && &Item == Under_)
    Canvas.Box(Place, Pressed() ? TColorRole::ButtonDown : TColorRole::ButtonHover,
               TColorRole::Border);
  if (&Item == Current_ && ShowsFocus())
    Canvas.FocusFrame(Place.Inner(1));
  const TColorRole Color = Item.Enabled() ? TColorRole::Text : TColorRole::QuietText;
  const int Arrow = ArrowWidth(Item);
  Place.Width -= Arrow;
  if (Arrow > 0)
    Canvas.DownArrow({Place.Right() - Rim, Place.Top, Arrow, Place.Height}, Color);
  TTextStyle Form;
  Form.Align = TAlign::Center;
  Form.Prefix = true;
  Form.Color = Color;
  if (Item.Images()) {
    const int Icon = Item.Images()->Extent();
    Item.Images()->Draw(Canvas, {Place.Left, Place.Top + Rim, Place.Width, Icon}, Item.Image(),
                        Item.Enabled());
    Place.Top += Icon + Rim;
    Place.Height -= Icon + Rim;
  }
  Canvas.Text(Place, Item.Caption(), Form);
}

TMenuItem *TToolBar::ItemAt(TPoint Point) const {
  for (TMenuItem *Item : Items_)
    if (Item->Visible() && !Item->IsLine() && ItemBounds(*Item).Contains(Point))
      return Item;
  return nullptr;
}

TAnswer TToolBar::Receive(const TMessage &Message) {
  switch (Message.Id) {
  case WM_GETDLGCODE:
    return DLGC_WANTARROWS;
  case WM_MOUSEMOVE:
  case WM_MOUSELEAVE: {
    TMenuItem *Now = Message.Id == WM_MOUSEMOVE ? ItemAt(PointOf(Message.LParam)) : nullptr;
    if (std::exchange(Under_, Now) != Now)
      Invalidate();
    break;
  }
  case WM_LBUTTONDOWN:
  case WM_LBUTTONDBLCLK: {
    // A menu opens at the press, as menus do; a button acts when it is let go.
    const TPoint Point = PointOf(Message.LParam);
    Under_ = ItemAt(Point);
    if (!Under_ || !Under_->Enabled())
      return 0;
    const TRect Place = ItemBounds(*Under_);
    const bool Arrow = !Under_->Items().empty() && Point.X >= Place.Right() - ArrowWidth(*Under_);
    if (Arrow || (!Under_->Items().empty() && !Under_->Handles(TEvent::Click))) {
      Open(*Under_);
      return 0;
    }
    Current_ = Under_;
    break;
  }
  case WM_LBUTTONUP: {
    const bool WasPressed = Pressed();
    TMenuItem *Item = ItemAt(PointOf(Message.LParam));
    const TAnswer Answer = TWindowControl::Receive(Message);
    if (WasPressed && Item && Item == Current_)
      Item->Click();
    return Answer;
  }
  case WM_SETFOCUS:
    if (!Current_)
      Move(1);
    break;
  default:
    break;
  }
  return TWindowControl::Receive(Message);
}

void TToolBar::PressItem(TMenuItem &Item, bool Arrow) {
  if (Item.Items().empty() || (!Arrow && Item.Handles(TEvent::Click)))
    Item.Click();
  else
    Open(Item);
}

void TToolBar::Open(TMenuItem &Item) {
  if (!Item.Enabled())
    return;
  const TRect Place = ItemBounds(Item);
  POINT Corner{Place.Left, Place.Top};
  ClientToScreen(Handle(), &Corner);
  PopupBranch(*Owner(), Item,
              {static_cast<int>(Corner.x), static_cast<int>(Corner.y), Place.Width, Place.Height});
}

void TToolBar::Move(int Step) {
  const auto Count = static_cast<int>(Items_.size());
  const auto Found = std::find(Items_.begin(), Items_.end(), Current_);
  int Index =
      Found == Items_.end() ? (Step > 0 ? -1 : Count) : static_cast<int>(Found - Items_.begin());
  for (Index += Step; Index >= 0 && Index < Count; Index += Step) {
    TMenuItem *Item = Items_[static_cast<std::size_t>(Index)];
    if (Item->Visible() && !Item->IsLine()) {
      Current_ = Item;
      break;
    }
  }
  // For those who read a window's text: where the keyboard is.
  if (Current_)
    SetWindowTextW(Handle(), Wide(Current_->Caption()));
  Invalidate();
}

bool TToolBar::KeyDown(unsigned Key) {
  switch (Key) {
  case VK_LEFT:
    Move(-1);
    return true;
  case VK_RIGHT:
    Move(1);
    return true;
  case VK_SPACE:
  case VK_RETURN:
  case VK_DOWN:
    if (Current_)
      PressItem(*Current_, Key == VK_DOWN);
    return true;
  default:
    return false;
  }
}

} // namespace hivesweep
