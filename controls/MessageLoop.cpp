#include "controls/MessageLoop.h"

#include "controls/Form.h"
#include "controls/Win32.h"
#include "platform/Platform.h"

namespace hivesweep {

namespace {

std::exception_ptr &Kept() {
  static std::exception_ptr Error;
  return Error;
}

void ThrowKept() {
  if (Kept())
    std::rethrow_exception(std::exchange(Kept(), nullptr));
}

void Handle(MSG &Message) {
  auto *Form = dynamic_cast<TForm *>(TWindowControl::Of(GetAncestor(Message.hwnd, GA_ROOT)));
  if (Form && Form->TranslateKey(&Message))
    return;
  TranslateMessage(&Message);
  DispatchMessageW(&Message);
}

class TWindowMessages final : public TMessages {
public:
  // Asking for messages costs more than reading a value of the registry. A tick of the
  // system's clock is too short for a user to notice.
  void Pump() override {
    if (const DWORD Now = GetTickCount(); Now != LastPump_) {
      LastPump_ = Now;
      PumpMessages();
    }
  }
  void PumpAll() override { PumpMessages(); }

  void Post(TWindowHandle Window, std::uint32_t Message, std::uintptr_t WParam,
            std::intptr_t LParam) override {
    System_->Post(Window, Message, WParam, LParam);
  }

private:
  std::unique_ptr<TMessages> System_ = MakeLocalServices().Messages;
  DWORD LastPump_ = 0;
};

} // namespace

void KeepForLoop(std::exception_ptr Error) {
  if (!Kept())
    Kept() = std::move(Error);
  PostMessageW(nullptr, WM_NULL, 0, 0); // so that a waiting loop looks
}

bool LoopUntil(const std::function<bool()> &Done) {
  MSG Message;
  while (!Done()) {
    const BOOL Got = GetMessageW(&Message, nullptr, 0, 0);
    if (Got <= 0) {
      PostQuitMessage(static_cast<int>(Message.wParam));
      return false;
    }
    Handle(Message);
    ThrowKept();
  }
  return true;
}

void PumpMessages() {
  MSG Message;
  while (PeekMessageW(&Message, nullptr, 0, 0, PM_REMOVE)) {
    if (Message.message == WM_QUIT) {
      // It is meant for the loop that runs the whole program.
      PostQuitMessage(static_cast<int>(Message.wParam));
      return;
    }
    Handle(Message);
    ThrowKept();
  }
}

int RunProgram(TForm &Main) {
  Main.Show();
  LoopUntil([&Main] { return !Main.Visible(); });
  return 0;
}

std::unique_ptr<TMessages> MakeWindowMessages() { return std::make_unique<TWindowMessages>(); }

} // namespace hivesweep
