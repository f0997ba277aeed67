#include "ui/Foreground.h"

#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

// While it lives, this thread shares its input with the thread of another window, and may
// so hand on what that one has: the foreground.
class TSharedInput {
public:
  explicit TSharedInput(HWND Other)
      : Thread_(Other ? GetWindowThreadProcessId(Other, nullptr) : 0),
        Shared_(Thread_ != 0 && AttachThreadInput(GetCurrentThreadId(), Thread_, TRUE)) {}
  TSharedInput(const TSharedInput &) = delete;
  TSharedInput &operator=(const TSharedInput &) = delete;
  ~TSharedInput() {
    if (Shared_)
      AttachThreadInput(GetCurrentThreadId(), Thread_, FALSE);
  }

private:
  DWORD Thread_;
  bool Shared_;
};

// While it lives, programs may come to the front whatever the user did last. The setting
// is one of the user's: it gets its value back in every case.
class TNoForegroundLock {
public:
  TNoForegroundLock()
      : Known_(SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &Before_, 0) != 0) {
    if (Known_)
      Set(0);
  }
  TNoForegroundLock(const TNoForegroundLock &) = delete;
  TNoForegroundLock &operator=(const TNoForegroundLock &) = delete;
  ~TNoForegroundLock() {
    if (Known_)
      Set(Before_);
  }

private:
  // The number itself goes where other settings have a pointer.
  static void Set(DWORD Milliseconds) {
    SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0,
                          reinterpret_cast<void *>(static_cast<UINT_PTR>(Milliseconds)),
                          SPIF_SENDCHANGE);
  }

  DWORD Before_ = 0;
  bool Known_;
};

bool HasForegroundLock() {
  OSVERSIONINFOW Version = {};
  Version.dwOSVersionInfoSize = sizeof Version;
  if (!GetVersionExW(&Version))
    return true; // every system of today has it
  return Version.dwMajorVersion > 4 ||
         (Version.dwPlatformId == VER_PLATFORM_WIN32_WINDOWS && Version.dwMinorVersion > 0);
}

void Bring(HWND Window) {
  BringWindowToTop(Window);
  SetForegroundWindow(Window);
}

bool IsInFront(HWND Window) { return GetForegroundWindow() == Window; }

} // namespace

bool ForceForeground(HWND__ *Window) {
  if (IsIconic(Window))
    ShowWindow(Window, SW_RESTORE);
  if (IsInFront(Window))
    return true;
  if (!HasForegroundLock()) {
    Bring(Window);
    return IsInFront(Window);
  }
  {
    const TSharedInput Shared(GetForegroundWindow());
    Bring(Window);
  }
  if (!IsInFront(Window)) {
    const TNoForegroundLock Unlocked;
    Bring(Window);
  }
  return IsInFront(Window);
}

} // namespace hivesweep
