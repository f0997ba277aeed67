#include "ui/SingleInstance.h"

#include "platform/win32/Win32.h"
#include "ui/Foreground.h"

namespace hivesweep {

namespace {

// ---- of the process, as the window procedure has no object -------------------------------

UINT ActivateMessage = 0;        // what a second start sends
HANDLE InstanceMutex = nullptr;  // marks a running instance
WNDPROC OldAppWndProc = nullptr; // what handled the application window's messages before
HWND AppWindow = nullptr;        // never seen; hears of a second start
HWND MainWindow = nullptr;       // null until there is one
bool ActivationWaits = false;    // a second start was heard before there was a main window

constexpr wchar_t AppClass[] = L"HivesweepApplication";

// As the disk spells it: names of mutexes differ in the case of a letter.
std::u16string InstanceName() {
  const std::u16string Path = GrowingText(
      [](wchar_t *Units, DWORD Count) { return GetModuleFileNameW(nullptr, Units, Count); });
  WIN32_FIND_DATAW Found;
  if (const TSearch Search(Path, Found); Search.IsOpen())
    return FromWide(Found.cFileName);
  return Path.substr(Path.rfind(u'\\') + 1);
}

// What asks all windows to close must not take the program's ear.
LRESULT CALLBACK StayWndProc(HWND Window, UINT Message, WPARAM WParam, LPARAM LParam) {
  return Message == WM_CLOSE ? 0 : DefWindowProcW(Window, Message, WParam, LParam);
}

void MakeAppWindow() {
  WNDCLASSEXW Class = {};
  Class.cbSize = sizeof Class;
  Class.lpfnWndProc = StayWndProc;
  Class.hInstance = GetModuleHandleW(nullptr);
  Class.lpszClassName = AppClass;
  RegisterClassExW(&Class);
  // Top-level, as messages to all programs reach no other kind of window.
  AppWindow = CreateWindowExW(WS_EX_TOOLWINDOW, AppClass, L"Hivesweep", WS_POPUP, 0, 0, 0, 0,
                              nullptr, nullptr, Class.hInstance, nullptr);
}

BOOL CALLBACK FindUsable(HWND Window, LPARAM Found) {
  if (!IsWindowVisible(Window) || !IsWindowEnabled(Window) ||
      GetAncestor(Window, GA_ROOTOWNER) != MainWindow)
    return TRUE;
  *reinterpret_cast<HWND *>(Found) = Window;
  return FALSE;
}

// The window that the user can go on with: a dialog that is open over the main window has
// it disabled.
HWND UsableWindow() {
  HWND Last = GetLastActivePopup(MainWindow);
  // Another program may have activated the disabled window itself.
  if (!IsWindowEnabled(Last))
    EnumThreadWindows(GetCurrentThreadId(), FindUsable, reinterpret_cast<LPARAM>(&Last));
  return Last;
}

void Activate() {
  if (!MainWindow) {
    ActivationWaits = true;
    return;
  }
  // What comes now activates the main window, whose last popup then is itself.
  const HWND Usable = UsableWindow();
  if (IsIconic(MainWindow))
    ShowWindow(MainWindow, SW_RESTORE);
  // The application's visible window: a hidden one would keep the keyboard if the other
  // could not be brought to the front.
  SetForegroundWindow(MainWindow);
  ForceForeground(Usable);
}

LRESULT CALLBACK AppWndProc(HWND Window, UINT Message, WPARAM WParam, LPARAM LParam) {
  if (Message == ActivateMessage && Message != 0) {
    Activate();
    return 0;
  }
  return CallWindowProcW(OldAppWndProc, Window, Message, WParam, LParam);
}

void HookAppWindow() {
  OldAppWndProc = reinterpret_cast<WNDPROC>(
      SetWindowLongPtrW(AppWindow, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(AppWndProc)));
}

// Since Windows Vista a program with more rights hears one with less only where it wants to.
void HearAllPrograms() {
  using TChangeFilter = BOOL(WINAPI *)(UINT, DWORD);
  constexpr DWORD Add = 1;
  if (const auto ChangeFilter =
          reinterpret_cast<TChangeFilter>(FindFunction(L"user32.dll", "ChangeWindowMessageFilter")))
    ChangeFilter(ActivateMessage, Add);
}

void ActivateExisting() {
  // The user has just started this program, so that it may give the foreground away.
  AllowSetForegroundWindow(ASFW_ANY);
  DWORD Recipients = BSM_APPLICATIONS;
  BroadcastSystemMessageW(BSF_POSTMESSAGE | BSF_IGNORECURRENTTASK, &Recipients, ActivateMessage, 0,
                          0);
}

} // namespace

bool InitSingleInstance() {
  const std::u16string Name = InstanceName();
  // Before the mutex is there: who finds the mutex also finds the window to tell.
  MakeAppWindow();
  ActivateMessage = RegisterWindowMessageW(Wide(Name));
  InstanceMutex = CreateMutexW(nullptr, FALSE, Wide(Name));
  const DWORD Error = GetLastError();
  // An instance with more rights than this one does not let go of its mutex even to look.
  const bool Runs = InstanceMutex ? Error == ERROR_ALREADY_EXISTS : Error == ERROR_ACCESS_DENIED;
  if (Runs)
    ActivateExisting();
  if (!InstanceMutex || Runs) {
    DoneSingleInstance();
    return false;
  }
  HearAllPrograms();
  HookAppWindow();
  return true;
}

TMainWindow::TMainWindow(HWND__ *Window) {
  MainWindow = Window;
  if (std::exchange(ActivationWaits, false))
    Activate();
}

TMainWindow::~TMainWindow() { MainWindow = nullptr; }

void DoneSingleInstance() {
  if (AppWindow)
    DestroyWindow(std::exchange(AppWindow, nullptr));
  if (InstanceMutex)
    CloseHandle(std::exchange(InstanceMutex, nullptr));
  ActivationWaits = false;
}

} // namespace hivesweep
