// The library Infopane.dll: what a product says of itself. The program loads it when it is
// asked for and does without it when it is not there. It is kept small: nothing of the C++
// library, whose share would be four times all of the rest.
#include <cwchar>

#include "platform/win32/Win32.h"

#include <shellapi.h>

#include "infopane/About.h"

namespace hivesweep {

namespace {

HINSTANCE Library = nullptr;

// In the middle of the window that the dialog opens over, or of the screen, and whole on
// the screen.
void Center(HWND Dialog, HWND Over) {
  MONITORINFO Info = {};
  Info.cbSize = sizeof Info;
  if (!GetMonitorInfoW(MonitorFromWindow(Over, MONITOR_DEFAULTTOPRIMARY), &Info))
    SystemParametersInfoW(SPI_GETWORKAREA, 0, &Info.rcWork, 0);
  const RECT Screen = Info.rcWork;
  RECT Place = Screen, Own;
  if (Over && !IsIconic(Over) && IsWindowVisible(Over))
    GetWindowRect(Over, &Place);
  GetWindowRect(Dialog, &Own);
  const auto Fit = [](LONG From, LONG To, LONG Extent, LONG Least, LONG Most) {
    const LONG Middle = (From + To - Extent) / 2;
    const LONG Last = Middle > Most - Extent ? Most - Extent : Middle;
    return static_cast<int>(Last < Least ? Least : Last);
  };
  SetWindowPos(Dialog, nullptr,
               Fit(Place.left, Place.right, Own.right - Own.left, Screen.left, Screen.right),
               Fit(Place.top, Place.bottom, Own.bottom - Own.top, Screen.top, Screen.bottom), 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// The dialog's own letters, larger and bold.
HFONT TitleFont(HWND Dialog) {
  LOGFONTW Font = {};
  const auto Plain = reinterpret_cast<HFONT>(SendMessageW(Dialog, WM_GETFONT, 0, 0));
  if (!Plain || !GetObjectW(Plain, sizeof Font, &Font))
    return nullptr;
  Font.lfHeight = Font.lfHeight * 3 / 2;
  Font.lfWeight = FW_BOLD;
  return CreateFontIndirectW(&Font);
}

// Sharp at every scale of the screen: the icon is taken at the size at which it is shown.
HICON LargeIcon() {
  const int Size = GetSystemMetrics(SM_CXICON) * 3 / 2;
  return static_cast<HICON>(LoadImageW(Library, MAKEINTRESOURCEW(ABOUT_APP_ICON), IMAGE_ICON, Size,
                                       Size, LR_DEFAULTCOLOR));
}

// What the dialog needs for as long as it is open.
struct TAbout {
  HWND Over = nullptr;
  HFONT Title = nullptr;
  HICON Icon = nullptr;

  void Open(HWND Dialog) {
    Title = TitleFont(Dialog);
    if (Title)
      SendDlgItemMessageW(Dialog, ABOUT_NAME, WM_SETFONT, reinterpret_cast<WPARAM>(Title), 0);
    Icon = LargeIcon();
    if (Icon)
      SendDlgItemMessageW(Dialog, ABOUT_ICON, STM_SETICON, reinterpret_cast<WPARAM>(Icon), 0);
    Center(Dialog, Over);
  }

  void Close() const {
    if (Title)
      DeleteObject(Title);
    if (Icon)
      DestroyIcon(Icon);
  }
};

INT_PTR CALLBACK AboutProc(HWND Dialog, UINT Message, WPARAM WParam, LPARAM LParam) {
  switch (Message) {
  case WM_INITDIALOG:
    reinterpret_cast<TAbout *>(LParam)->Open(Dialog);
    return TRUE;
  case WM_COMMAND:
    if (LOWORD(WParam) != IDOK && LOWORD(WParam) != IDCANCEL)
      return FALSE;
    EndDialog(Dialog, LOWORD(WParam));
    return TRUE;
  default:
    return FALSE;
  }
}

// A text that is put together; what finds no room in it is cut.
class TText {
public:
  const wchar_t *Units() const { return Units_; }
  void AddFolderOf(HINSTANCE Module) {
    Length_ = static_cast<int>(GetModuleFileNameW(Module, Units_, Room));
    while (Length_ > 0 && Units_[Length_ - 1] != L'\\')
      --Length_;
  }
  void AddResource(UINT Number) {
    Length_ += LoadStringW(Library, Number, Units_ + Length_, Room - Length_);
  }
  void Add(const wchar_t *Text) {
    lstrcpynW(Units_ + Length_, Text, Room - Length_);
    Length_ = lstrlenW(Units_);
  }

private:
  static constexpr int Room = 2'000;
  wchar_t Units_[Room] = L"";
  int Length_ = 0;
};

void Open(const wchar_t *Page) {
  TText Address;
  if (!std::wcschr(Page, L':')) // a file's name, and no address
    Address.AddFolderOf(Library);
  Address.Add(Page);
  const HWND Over = GetActiveWindow();
  const HINSTANCE Answer =
      ShellExecuteW(Over, L"open", Address.Units(), nullptr, nullptr, SW_SHOWNORMAL);
  if (reinterpret_cast<INT_PTR>(Answer) > 32)
    return;
  TText Message;
  Message.AddResource(TEXT_NOT_OPENED);
  Message.Add(L"\n");
  Message.Add(Address.Units());
  MessageBoxW(Over, Message.Units(), L"Hivesweep", MB_OK | MB_ICONWARNING);
}

} // namespace

} // namespace hivesweep

extern "C" {

BOOL WINAPI DllMain(HINSTANCE Instance, DWORD Reason, void *) {
  if (Reason == DLL_PROCESS_ATTACH)
    hivesweep::Library = Instance;
  return TRUE;
}

__declspec(dllexport) void ShowAbout() {
  using namespace hivesweep;
  TAbout About{GetActiveWindow()};
  DialogBoxParamW(Library, MAKEINTRESOURCEW(ABOUT_DIALOG), About.Over, AboutProc,
                  reinterpret_cast<LPARAM>(&About));
  About.Close();
}

__declspec(dllexport) void NavigateToHomePage() { hivesweep::Open(HOME_PAGE); }

} // extern "C"
