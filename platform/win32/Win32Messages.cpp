#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

class TWin32Messages final : public TMessages {
public:
  void Pump() override {
    MSG Message;
    while (PeekMessageW(&Message, nullptr, 0, 0, PM_REMOVE)) {
      if (Message.message == WM_QUIT) {
        // It is meant for the loop that runs the whole program, and would be lost
        // here: a scan would go on in a program that has no window any more.
        PostQuitMessage(static_cast<int>(Message.wParam));
        return;
      }
      TranslateMessage(&Message);
      DispatchMessageW(&Message);
    }
  }

  void Post(TWindowHandle Window, std::uint32_t Message, std::uintptr_t WParam,
            std::intptr_t LParam) override {
    // To no window the system would post into the thread's own queue.
    if (Window != 0)
      PostMessageW(reinterpret_cast<HWND>(Window), Message, WParam, LParam);
  }
};

} // namespace

std::unique_ptr<TMessages> MakeWin32Messages() { return std::make_unique<TWin32Messages>(); }

} // namespace hivesweep
