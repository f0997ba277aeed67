#include "tests/controls/User.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "controls/MessageLoop.h"
#include "controls/Win32.h"

namespace hivesweep {

namespace {

constexpr UINT Patience = 10'000; // milliseconds

// The window that shows a control, and the control's corner in it.
HWND WindowOf(const TControl &Control, TPoint &Corner) {
  if (const auto *Own = dynamic_cast<const TWindowControl *>(&Control)) {
    Corner = {0, 0};
    return Own->Handle();
  }
  Corner = {Control.Bounds().Left, Control.Bounds().Top};
  return Control.Parent()->Handle();
}

TPoint MiddleOf(const TControl &Control) {
  return {Control.Bounds().Width / 2, Control.Bounds().Height / 2};
}

void PostClickAt(const TControl &Control, TPoint Point) {
  TPoint Corner;
  const HWND Window = WindowOf(Control, Corner);
  PostPress(Control, Point);
  PostMessageW(Window, WM_LBUTTONUP, 0, MAKELPARAM(Corner.X + Point.X, Corner.Y + Point.Y));
}

// What is to be pressed, and what the boxes said that have been answered.
std::vector<int> AnswerButtons;
std::vector<std::u16string> AnswerTexts;

void CALLBACK AnswerBox(HWND, UINT, UINT_PTR Timer, DWORD) {
  if (AnswerTexts.size() == AnswerButtons.size())
    return; // it was on its way already
  const int Button = AnswerButtons[AnswerTexts.size()];
  const HWND Box = FindWindowW(L"#32770", nullptr);
  if (!Box || !GetDlgItem(Box, Button))
    return; // not yet
  wchar_t Text[512] = L"";
  GetDlgItemTextW(Box, 0xFFFF, Text, static_cast<int>(std::size(Text)));
  AnswerTexts.emplace_back(FromWide(Text));
  if (AnswerTexts.size() == AnswerButtons.size())
    KillTimer(nullptr, Timer);
  PostMessageW(Box, WM_COMMAND, static_cast<WPARAM>(Button), 0);
}

UINT_PTR AnswerTimer = 0;

TForm *ModalForm = nullptr; // null when it was given up

void CALLBACK GiveUp(HWND, UINT, UINT_PTR, DWORD) {
  if (TForm *const Form = std::exchange(ModalForm, nullptr))
    Form->Close();
}

} // namespace

void PostPress(const TControl &Control, TPoint Point) {
  TPoint Corner;
  const HWND Window = WindowOf(Control, Corner);
  PostMessageW(Window, WM_LBUTTONDOWN, MK_LBUTTON,
               MAKELPARAM(Corner.X + Point.X, Corner.Y + Point.Y));
}

void PressAt(const TControl &Control, TPoint Point) {
  PostClickAt(Control, Point);
  PumpMessages();
}

void PostClick(const TControl &Control) { PostClickAt(Control, MiddleOf(Control)); }
void Press(const TControl &Control) { PressAt(Control, MiddleOf(Control)); }

void PostKey(int Key) {
  PostMessageW(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(Key), 1);
  PostMessageW(GetFocus(), WM_KEYUP, static_cast<WPARAM>(Key), static_cast<LPARAM>(0xC0000001));
}

void Type(int Key) {
  PostKey(Key);
  PumpMessages();
}

void TypeWithAlt(char16_t Letter) {
  PostMessageW(GetFocus(), WM_SYSCHAR, Letter, 0x20000001);
  PumpMessages();
}

bool WaitUntil(const std::function<bool()> &Done) {
  const DWORD Start = GetTickCount();
  const UINT_PTR Waker = SetTimer(nullptr, 0, 10, nullptr);
  LoopUntil([&] { return Done() || GetTickCount() - Start > Patience; });
  KillTimer(nullptr, Waker);
  return Done();
}

bool ShowModalForm(TForm &Form) {
  ModalForm = &Form;
  const UINT_PTR Timer = SetTimer(nullptr, 0, Patience, GiveUp);
  const bool GoesOn = Form.ShowModal();
  KillTimer(nullptr, Timer);
  return std::exchange(ModalForm, nullptr) != nullptr && GoesOn;
}

TBoxAnswer::TBoxAnswer(std::vector<int> Buttons) {
  AnswerButtons = std::move(Buttons);
  AnswerTexts.clear();
  AnswerTimer = SetTimer(nullptr, 0, 10, AnswerBox);
}

TBoxAnswer::~TBoxAnswer() { KillTimer(nullptr, AnswerTimer); }

const std::vector<std::u16string> &TBoxAnswer::Texts() const { return AnswerTexts; }

const std::u16string &TBoxAnswer::Text() const {
  static const std::u16string None;
  return AnswerTexts.empty() ? None : AnswerTexts.back();
}

TColor PixelOf(const TControl &Control, TPoint Point) {
  TPoint Corner;
  const HWND Window = WindowOf(Control, Corner);
  RECT Inside;
  GetClientRect(Window, &Inside);
  const HDC Screen = GetDC(Window);
  TColor Answer;
  {
    const HDC Memory = CreateCompatibleDC(Screen);
    const HBITMAP Picture = CreateCompatibleBitmap(Screen, Inside.right, Inside.bottom);
    const HGDIOBJ Before = SelectObject(Memory, Picture);
    SendMessageW(Window, WM_PRINTCLIENT, reinterpret_cast<WPARAM>(Memory), PRF_CLIENT);
    Answer = GetPixel(Memory, Corner.X + Point.X, Corner.Y + Point.Y);
    SelectObject(Memory, Before);
    DeleteObject(Picture);
    DeleteDC(Memory);
  }
  ReleaseDC(Window, Screen);
  return Answer;
}

TObjectCount CountObjects() {
  TObjectCount Count{static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS)),
                     static_cast<int>(GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS))};
  if (Count.Drawing > 0)
    return Count;
  // Wine does not count, but its numbers are dense: so many new objects that all gaps are
  // filled reach a number that rises by what is left behind.
  std::vector<HPEN> Pens(3'000);
  std::vector<HMENU> Menus(1'000);
  for (HPEN &Pen : Pens) {
    Pen = CreatePen(PS_SOLID, 3, RGB(1, 2, 3));
    Count.Drawing = std::max<int>(Count.Drawing, LOWORD(Pen));
  }
  for (HMENU &Menu : Menus) {
    Menu = CreateMenu();
    Count.Windows = std::max<int>(Count.Windows, LOWORD(Menu));
  }
  for (const HPEN Pen : Pens)
    DeleteObject(Pen);
  for (const HMENU Menu : Menus)
    DestroyMenu(Menu);
  return Count;
}

} // namespace hivesweep
