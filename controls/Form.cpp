#include "controls/Form.h"

#include <algorithm>

#include "controls/Button.h"
#include "controls/FormBuilder.h"
#include "controls/FormLayout.h"
#include "controls/Hints.h"
#include "controls/MenuItem.h"
#include "controls/MessageLoop.h"
#include "controls/Timer.h"
#include "controls/WindowMap.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr unsigned FirstCommand = 100; // below are numbers that the system uses itself

DWORD FormStyle(const TFormTable &Table) {
  DWORD Style = WS_CAPTION | WS_SYSMENU;
  if (Table.Resizable)
    Style |= WS_THICKFRAME;
  if (!Table.Dialog)
    Style |= WS_MINIMIZEBOX | WS_MAXIMIZEBOX;
  else if (!Table.Resizable)
    Style |= WS_POPUP;
  return Style;
}

// What the task bar leaves of the screen that has most of the window; of the first one for
// none.
RECT ScreenOf(HWND Window) {
  MONITORINFO Info{};
  Info.cbSize = sizeof Info;
  if (!GetMonitorInfoW(MonitorFromWindow(Window, MONITOR_DEFAULTTOPRIMARY), &Info))
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &Info.rcWork, 0);
  return Info.rcWork;
}

// In the middle of another window, or of the screen, and whole on the screen.
TPoint Centered(const TSize &Size, HWND Over) {
  const RECT Screen = ScreenOf(Over);
  RECT Place = Screen;
  if (Over && !IsIconic(Over) && IsWindowVisible(Over))
    GetWindowRect(Over, &Place);
  const auto Fit = [](LONG From, LONG To, int Extent, LONG Least, LONG Most) {
    const int Middle = static_cast<int>(From + To - Extent) / 2;
    return std::max(static_cast<int>(Least), std::min(Middle, static_cast<int>(Most) - Extent));
  };
  return {Fit(Place.left, Place.right, Size.Width, Screen.left, Screen.right),
          Fit(Place.top, Place.bottom, Size.Height, Screen.top, Screen.bottom)};
}

} // namespace

TFormError::TFormError(std::u16string_view Form, std::u16string_view Component,
                       std::string_view What)
    : std::logic_error(ToUtf8(Form) + "." + ToUtf8(Component) + ": " + std::string(What)) {}

TForm::TForm(TLook &Look, TForm *Above, const TFormTable &Table,
             const std::vector<TNamedHandler> &Handlers)
    : TWindowControl(this, nullptr, Table.Name), Look_(Look), Above_(Above), Dialog_(Table.Dialog) {
  TakeVisible(false);
  SetText(Table.Caption);
  SetDesign({0, 0, Table.Size.Width, Table.Size.Height});
  MakeFormWindow(Table);
  Hints_ = std::make_unique<THints>(*this);
  TFormBuilder(*this, Handlers).Build(Table);
  Pauses_ = 0;
  RequestLayout();
  const TSize Start = Table.Start.value_or(Table.Size);
  SetSizeOnScreen({Look.Scale(Start.Width), Look.Scale(Start.Height)});
  Fire(TEvent::Create);
}

TForm::~TForm() {
  Pauses_ = 1;
  Hints_.reset();
  // Children before their parents.
  while (!Components_.empty())
    Components_.pop_back();
}

void TForm::MakeFormWindow(const TFormTable &Table) {
  MakeWindow(nullptr, FormStyle(Table),
             WS_EX_CONTROLPARENT | (Table.Dialog ? WS_EX_DLGMODALFRAME : WS_EX_APPWINDOW));
  if (Table.Dialog) // Close alone is of use there
    for (const int Command : {SC_MINIMIZE, SC_MAXIMIZE, SC_RESTORE})
      DeleteMenu(GetSystemMenu(Handle(), FALSE), static_cast<UINT>(Command), MF_BYCOMMAND);
}

TComponent *TForm::FindComponent(std::u16string_view Name) const {
  const auto Found =
      std::find_if(Components_.begin(), Components_.end(),
                   [Name](const auto &Component) { return Component->Name() == Name; });
  return Found == Components_.end() ? nullptr : Found->get();
}

bool TForm::Knows(TEvent Event) const {
  return Event == TEvent::Create || Event == TEvent::Show || Event == TEvent::Close;
}

// ---- life ------------------------------------------------------------------------------

void TForm::Show() {
  RECT Window;
  GetWindowRect(Handle(), &Window);
  const TSize Size{static_cast<int>(Window.right - Window.left),
                   static_cast<int>(Window.bottom - Window.top)};
  const TPoint Place = Centered(Size, OwnerWindow());
  SetWindowPos(Handle(), nullptr, Place.X, Place.Y, 0, 0,
               SWP_NOZORDER | SWP_NOSIZE | SWP_NOACTIVATE);
  Fire(TEvent::Show);
  TakeVisible(true);
  // Marks for the keyboard appear when the keyboard is used.
  SendMessageW(Handle(), WM_CHANGEUISTATE, MAKEWPARAM(UIS_INITIALIZE, 0), 0);
  ShowWindow(Handle(), SW_SHOWNORMAL);
  if (!FocusedControl())
    FocusNext();
}

bool TForm::ShowModal() {
  Modal_ = true;
  Closing_ = false;
  if (Above_) {
    Above_->Over_ = this;
    EnableWindow(Above_->Handle(), FALSE);
  }
  bool GoesOn = false;
  try {
    Show();
    GoesOn = LoopUntil([this] { return Closing_; });
  } catch (...) {
    SetHidden();
    throw;
  }
  SetHidden();
  Fire(TEvent::Close);
  return GoesOn;
}

void TForm::SetHidden() {
  // Before this window goes: else the system would look for another program's window
  // to activate.
  if (Modal_ && Above_)
    EnableWindow(Above_->Handle(), TRUE);
  TakeVisible(false);
  if (Handle())
    ShowWindow(Handle(), SW_HIDE);
  if (!std::exchange(Modal_, false) || !Above_)
    return;
  SetActiveWindow(Above_->Handle());
  Above_->Over_ = nullptr;
  if (std::exchange(Above_->CloseWaits_, false))
    PostMessageW(Above_->Handle(), WM_CLOSE, 0, 0);
}

void TForm::Close() {
  if (!Visible())
    return;
  Closing_ = true;
  if (!Modal_) {
    SetHidden();
    Fire(TEvent::Close);
  }
  PostMessageW(Handle(), WM_NULL, 0, 0); // so that its loop looks
}

// ---- layout ----------------------------------------------------------------------------

TLayoutPause::~TLayoutPause() {
  if (--Form_.Pauses_ == 0 && Form_.LayoutWanted_)
    Form_.RequestLayout();
}

TSize TForm::ClientSize() const {
  RECT Inside;
  GetClientRect(Handle(), &Inside);
  return {static_cast<int>(Inside.right), static_cast<int>(Inside.bottom)};
}

void TForm::RequestLayout() {
  LayoutWanted_ = true;
  if (Pauses_ > 0 || Arranging_ || !Handle() || IsIconic(Handle()))
    return;
  Arrange();
}

void TForm::Arrange() {
  Arranging_ = true;
  LayoutWanted_ = false;
  const TRect Scaled = Look_.Scale(Design());
  const TSize Design{Scaled.Width, Scaled.Height};
  Least_ = LeastSize(*this, Design, ClientSize().Width);
  const TSize Before = ClientSize();
  const TSize Size{std::max(Before.Width, Least_.Width), std::max(Before.Height, Least_.Height)};
  if (Size != Before)
    SetClientSize(Size);
  TakeBounds({0, 0, Size.Width, Size.Height});
  PlaceControls(*this, Design, Size);
  Hints_->Update();
  Arranging_ = false;
  Invalidate();
}

TSize TForm::FrameSize() const {
  RECT Window;
  GetWindowRect(Handle(), &Window);
  const TSize Inside = ClientSize();
  return {static_cast<int>(Window.right - Window.left) - Inside.Width,
          static_cast<int>(Window.bottom - Window.top) - Inside.Height};
}

void TForm::SetClientSize(const TSize &Pixels) {
  // Twice: only the first change shows whether the menu then takes another line.
  for (int Try = 0; Try < 2; ++Try) {
    const TSize Frame = FrameSize();
    SetWindowPos(Handle(), nullptr, 0, 0, Pixels.Width + Frame.Width, Pixels.Height + Frame.Height,
                 SWP_NOZORDER | SWP_NOMOVE | SWP_NOACTIVATE);
  }
}

void TForm::SetSizeOnScreen(const TSize &Pixels) {
  const TSize Frame = FrameSize();
  const RECT Screen = ScreenOf(OwnerWindow());
  const auto Fit = [](LONG Room, int Border, int Wanted, int Least) {
    return std::max(std::min(Wanted, static_cast<int>(Room) - Border), Least);
  };
  SetClientSize({Fit(Screen.right - Screen.left, Frame.Width, Pixels.Width, Least_.Width),
                 Fit(Screen.bottom - Screen.top, Frame.Height, Pixels.Height, Least_.Height)});
}

// ---- keyboard ---------------------------------------------------------------------------

TWindowControl *TForm::FocusedControl() const {
  TWindowControl *Focused = Of(GetFocus());
  return Focused && Focused != this && Focused->Owner() == this ? Focused : nullptr;
}

void TForm::GiveFocus(const TWindowControl &Control) {
  LastFocus_ = Control.Handle();
  if (Visible())
    SetFocus(LastFocus_);
}

void TForm::FocusNext() {
  const TWindowControl *Now = FocusedControl();
  if (const HWND Next = GetNextDlgTabItem(Handle(), Now ? Now->Handle() : nullptr, FALSE))
    SetFocus(Next);
}

bool TForm::TranslateKey(tagMSG *Message) {
  if (Message->message == WM_KEYDOWN) {
    TWindowControl *Focused = FocusedControl();
    const auto Key = static_cast<unsigned>(Message->wParam);
    // A key that is held down presses once: the next press may find another form, or a
    // button that has come to mean the opposite.
    if ((HIWORD(Message->lParam) & KF_REPEAT) &&
        (Key == VK_RETURN || Key == VK_ESCAPE || Key == VK_SPACE))
      return true;
    TButton *Meant = Key == VK_RETURN ? Default_ : Key == VK_ESCAPE ? Cancel_ : nullptr;
    if (Key == VK_RETURN)
      if (auto *Button = dynamic_cast<TButton *>(Focused))
        Meant = Button;
    if (Meant) {
      if (Meant->Enabled() && Meant->Visible())
        Meant->Click();
      return true;
    }
    if (Key == VK_ESCAPE && Dialog_) {
      Close();
      return true;
    }
    if (Key == VK_RETURN)
      return false;
    if (Key == VK_F1) { // not every control of the system passes it on
      SendMessageW(Handle(), WM_HELP, 0, 0);
      return true;
    }
  }
  return IsDialogMessageW(Handle(), Message);
}

// ---- messages -----------------------------------------------------------------------------

TAnswer TForm::Receive(const TMessage &Message) {
  switch (Message.Id) {
  case WM_CLOSE:
    if (Over_) {
      // What works there comes to its end first.
      CloseWaits_ = true;
      PostMessageW(Over_->Handle(), WM_CLOSE, 0, 0);
    } else if (!Cancel_)
      Close();
    else if (Cancel_->Enabled())
      Cancel_->Click();
    return 0;
  case WM_SIZE:
    if (Message.WParam != SIZE_MINIMIZED) {
      Frame_ = FrameSize();
      RequestLayout();
    }
    return 0;
  case WM_GETMINMAXINFO:
    // With the frame that it had last: a window that is being restored still measures what
    // it does minimised.
    reinterpret_cast<MINMAXINFO *>(Message.LParam)->ptMinTrackSize = {
        Least_.Width + Frame_.Width, Least_.Height + Frame_.Height};
    return 0;
  case WM_ACTIVATE:
    if (LOWORD(Message.WParam) == WA_INACTIVE) {
      if (FocusedControl())
        LastFocus_ = FocusedControl()->Handle();
      return 0;
    }
    break;
  case WM_SETFOCUS:
    // The number may have passed to another window.
    if (const TWindowControl *Last = Of(LastFocus_); Last && Last->Owner() == this)
      SetFocus(LastFocus_);
    else
      FocusNext();
    return 0;
  case WM_COMMAND:
    if (Message.LParam == 0) {
      RunCommand(LOWORD(Message.WParam));
      return 0;
    }
    break;
  case WM_MEASUREITEM:
  case WM_DRAWITEM:
    if (Message.WParam == 0) // of a menu
      return TMenuItem::DrawIcon(*this, Message);
    break;
  case WM_TIMER:
    if (auto *Timer = TTimer::Of(*this, Message.WParam)) {
      Timer->Fire(TEvent::Timer);
      return 0;
    }
    break;
  case WM_SYSCOLORCHANGE:
  case WM_SETTINGCHANGE:
    ReloadColors();
    break;
  default:
    break;
  }
  return TWindowControl::Receive(Message);
}

void TForm::ReloadColors() {
  Look_.ReloadColors();
  for (const auto &Component : Components_)
    if (auto *Control = dynamic_cast<TWindowControl *>(Component.get()))
      Control->ColorsChanged();
  Invalidate();
}

void TForm::VisitTexts(const TTextVisitor &Visit) {
  std::u16string Caption = Text();
  Visit(u"Caption", Caption);
  SetText(Caption);
}

bool TForm::AnswersHint(const TMessage &Message) { return Hints_ && Hints_->Answer(Message); }

// ---- menus --------------------------------------------------------------------------------

unsigned TForm::AddCommand(TMenuItem &Item) {
  Commands_.push_back(&Item);
  return FirstCommand + static_cast<unsigned>(Commands_.size()) - 1;
}

void TForm::RunCommand(unsigned Number) {
  if (Number >= FirstCommand && Number - FirstCommand < Commands_.size())
    Commands_[Number - FirstCommand]->Click();
}

void TForm::SetMenu(HMENU__ *Menu) { ::SetMenu(Handle(), Menu); }

} // namespace hivesweep
