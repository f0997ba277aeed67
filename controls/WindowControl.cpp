#include "controls/WindowControl.h"

#include <algorithm>

#include "controls/Form.h"
#include "controls/WindowMap.h"

namespace hivesweep {

TWindowControl::~TWindowControl() {
  if (!Window_)
    return;
  // First the object, then the window: no message may reach a half-ended object.
  const HWND Window = std::exchange(Window_, nullptr);
  TWindowMap::Detach(Window);
  DestroyWindow(Window);
}

void TWindowControl::MakeWindow(const wchar_t *Class, unsigned Style, unsigned ExtendedStyle) {
  const bool Child = Parent() != nullptr;
  const HWND Above = Child ? Parent()->Handle() : Owner()->OwnerWindow();
  Window_ = CreateWindowExW(ExtendedStyle, Class ? Class : TWindowMap::PlainClass(), Wide(Text()),
                            Style | WS_CLIPSIBLINGS | WS_CLIPCHILDREN |
                                (Child ? WS_CHILD | WS_VISIBLE : 0U),
                            Child ? 0 : CW_USEDEFAULT, Child ? 0 : CW_USEDEFAULT, 0, 0, Above,
                            nullptr, GetModuleHandleW(nullptr), nullptr);
  if (!Window_)
    throw TFormError(Owner()->Name(), Name(), "the system could not make its window");
  TWindowMap::Attach(Window_, *this);
  SendMessageW(Window_, WM_SETFONT, reinterpret_cast<WPARAM>(Look().Font(Font())), FALSE);
}

std::intptr_t TWindowControl::Inherited(const TMessage &Message) {
  return TWindowMap::CallPrevious(Window_, Message);
}

TWindowControl *TWindowControl::Of(HWND__ *Window) { return TWindowMap::Find(Window); }

bool TWindowControl::Focused() const { return Window_ && GetFocus() == Window_; }

void TWindowControl::Focus() { Owner()->GiveFocus(*this); }

void TWindowControl::SetBounds(const TRect &Pixels) {
  if (Pixels == Bounds())
    return;
  TControl::SetBounds(Pixels);
  SetWindowPos(Window_, nullptr, Pixels.Left, Pixels.Top, Pixels.Width, Pixels.Height,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void TWindowControl::SetVisible(bool Visible) {
  TControl::SetVisible(Visible);
  if (!Parent())
    return;
  // The focus must not stay where no key can be seen to act.
  if (!Visible && Focused())
    Owner()->FocusNext();
  ShowWindow(Window_, Visible ? SW_SHOWNA : SW_HIDE);
}

void TWindowControl::SetEnabled(bool Enabled) {
  if (!Enabled && Focused())
    Owner()->FocusNext();
  TControl::SetEnabled(Enabled);
  EnableWindow(Window_, Enabled);
}

void TWindowControl::Invalidate() {
  if (Window_)
    InvalidateRect(Window_, nullptr, FALSE);
}

void TWindowControl::InvalidateArea(const TRect &Area) {
  const RECT Rect = ToSystem(Area);
  if (Window_)
    InvalidateRect(Window_, &Rect, FALSE);
}

void TWindowControl::TextChanged() {
  if (Window_)
    SetWindowTextW(Window_, Wide(Text()));
}

void TWindowControl::Adopt(TControl &Child) { Children_.push_back(&Child); }

void TWindowControl::Disown(TControl &Child) {
  std::erase(Children_, &Child);
  if (PressedChild_ == &Child)
    PressedChild_ = nullptr;
}

// ---- drawing ----------------------------------------------------------------------

void TWindowControl::Paint(TCanvas &Canvas) {
  Canvas.Fill({0, 0, Bounds().Width, Bounds().Height}, Ground());
}

void TWindowControl::PaintAll(HDC__ *Context) {
  TCanvas Canvas(Context, Look());
  Paint(Canvas);
  for (TControl *Child : Children_)
    if (Child->Visible() && !dynamic_cast<TWindowControl *>(Child))
      Child->Paint(Canvas);
}

void TWindowControl::PaintWindow() {
  PAINTSTRUCT Work;
  const HDC Screen = BeginPaint(Window_, &Work);
  if (Screen && !IsRectEmpty(&Work.rcPaint)) {
    TPaintBuffer Buffer(Screen, FromSystem(Work.rcPaint));
    PaintAll(Buffer.Context());
  }
  EndPaint(Window_, &Work);
}

bool TWindowControl::TakesFocus() const {
  return (GetWindowLongW(Window_, GWL_STYLE) & WS_TABSTOP) != 0;
}

bool TWindowControl::ShowsFocus() const {
  return Focused() && !(SendMessageW(Window_, WM_QUERYUISTATE, 0, 0) & UISF_HIDEFOCUS);
}

// ---- messages ---------------------------------------------------------------------

TAnswer TWindowControl::Receive(const TMessage &Message) {
  switch (Message.Id) {
  case WM_ERASEBKGND:
    if (PaintsItself())
      return 1;
    break;
  case WM_PAINT:
    if (PaintsItself()) {
      PaintWindow();
      return 0;
    }
    break;
  case WM_PRINTCLIENT:
    if (PaintsItself()) {
      PaintAll(reinterpret_cast<HDC>(Message.WParam));
      return 0;
    }
    break;
  case WM_SETFOCUS:
  case WM_KILLFOCUS:
  case WM_UPDATEUISTATE:
    Invalidate();
    break;
  case WM_KEYDOWN:
    if (KeyDown(static_cast<unsigned>(Message.WParam)))
      return 0;
    break;
  // What a child's window tells its parent goes back to the child's object.
  case WM_COMMAND:
  case WM_NOTIFY: {
    const HWND From = Message.Id == WM_NOTIFY
                          ? reinterpret_cast<const NMHDR *>(Message.LParam)->hwndFrom
                          : reinterpret_cast<HWND>(Message.LParam);
    if (Message.Id == WM_NOTIFY && Owner()->AnswersHint(Message))
      return 0;
    TWindowControl *Child = Of(From);
    return Child && Child != this ? Child->Reflected(Message) : std::nullopt;
  }
  case WM_DRAWITEM: {
    TWindowControl *Child = Of(reinterpret_cast<const DRAWITEMSTRUCT *>(Message.LParam)->hwndItem);
    if (Message.WParam != 0 && Child && Child != this)
      return Child->Reflected(Message);
    break;
  }
  case WM_NCDESTROY: {
    const std::intptr_t Answer = Inherited(Message);
    // The system has ended the window, with a parent of it for example.
    TWindowMap::Detach(Window_);
    Window_ = nullptr;
    return Answer;
  }
  default:
    break;
  }
  return MouseMessage(Message);
}

TAnswer TWindowControl::Reflected(const TMessage &Message) {
  static_cast<void>(Message);
  return std::nullopt;
}

bool TWindowControl::KeyDown(unsigned Key) {
  static_cast<void>(Key);
  return false;
}

TAnswer TWindowControl::MouseMessage(const TMessage &Message) {
  switch (Message.Id) {
  case WM_MOUSEMOVE:
    Track(true);
    break;
  case WM_MOUSELEAVE:
    Track(false);
    break;
  case WM_LBUTTONDOWN:
  case WM_LBUTTONDBLCLK:
    if (PaintsItself()) {
      Press(PointOf(Message.LParam));
      return 0;
    }
    break;
  case WM_LBUTTONUP:
    if (PaintsItself()) {
      LetGo(PointOf(Message.LParam));
      return 0;
    }
    break;
  case WM_CAPTURECHANGED:
    Pressed_ = false;
    PressedChild_ = nullptr;
    Invalidate();
    break;
  case WM_SETCURSOR:
    if (LOWORD(Message.LParam) == HTCLIENT && reinterpret_cast<HWND>(Message.WParam) == Window_) {
      POINT Point;
      GetCursorPos(&Point);
      ScreenToClient(Window_, &Point);
      const TControl *Child = ChildAt({static_cast<int>(Point.x), static_cast<int>(Point.y)});
      if (Child ? Child->ShowsHand() : ShowsHand()) {
        SetCursor(LoadCursorW(nullptr, MAKEINTRESOURCEW(32649))); // the hand
        return 1;
      }
    }
    break;
  default:
    break;
  }
  return std::nullopt;
}

TControl *TWindowControl::ChildAt(TPoint Point) const {
  // The last one lies on top.
  const auto Found = std::find_if(Children_.rbegin(), Children_.rend(), [&](TControl *Child) {
    return Child->Visible() && Child->TakesMouse() && Child->Bounds().Contains(Point) &&
           !dynamic_cast<TWindowControl *>(Child);
  });
  return Found == Children_.rend() ? nullptr : *Found;
}

void TWindowControl::Track(bool Inside) {
  if (Inside == Hovered_)
    return;
  Hovered_ = Inside;
  if (PaintsItself())
    Invalidate();
  if (Inside) {
    TRACKMOUSEEVENT Request{};
    Request.cbSize = sizeof Request;
    Request.dwFlags = TME_LEAVE;
    Request.hwndTrack = Window_;
    TrackMouseEvent(&Request);
  }
}

void TWindowControl::Press(TPoint Point) {
  PressedChild_ = ChildAt(Point);
  Pressed_ = true;
  if (TakesFocus())
    Focus();
  SetCapture(Window_);
  Invalidate();
}

void TWindowControl::LetGo(TPoint Point) {
  TControl *Child = PressedChild_;
  if (!std::exchange(Pressed_, false))
    return;
  PressedChild_ = nullptr;
  ReleaseCapture();
  Invalidate();
  const TRect Whole{0, 0, Bounds().Width, Bounds().Height};
  if (Child ? ChildAt(Point) == Child : Whole.Contains(Point))
    (Child ? *Child : static_cast<TControl &>(*this)).Click();
}

} // namespace hivesweep
