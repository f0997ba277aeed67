#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

#include <shellapi.h>

namespace hivesweep {

namespace {

class TWin32Process final : public TProcess {
public:
  explicit TWin32Process(HANDLE Process) : Process_(Process ? Process : INVALID_HANDLE_VALUE) {}

  bool WaitForEnd(std::uint32_t Milliseconds) override {
    return !Process_.IsOpen() || WaitForSingleObject(Process_.Get(), Milliseconds) == WAIT_OBJECT_0;
  }

private:
  TFileHandle Process_;
};

class TWin32Shell final : public TShell {
public:
  bool Open(std::u16string_view Target, std::u16string_view Parameters) override {
    return Start(Target, Parameters) != nullptr;
  }

  std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                  std::u16string_view Parameters) override {
    if (Target.empty() || HoldsZero(Target) || HoldsZero(Parameters))
      return nullptr;
    const std::u16string File(Target);
    const std::u16string Arguments(Parameters);
    SHELLEXECUTEINFOW Info = {};
    Info.cbSize = sizeof Info;
    // This program may have ended before a conversation with the other one has.
    Info.fMask = SEE_MASK_NOCLOSEPROCESS | SEE_MASK_FLAG_NO_UI | SEE_MASK_FLAG_DDEWAIT;
    Info.lpVerb = L"open";
    Info.lpFile = Wide(File);
    Info.lpParameters = Wide(Arguments);
    Info.nShow = SW_SHOWNORMAL;
    if (!ShellExecuteExW(&Info))
      return nullptr;
    return std::make_unique<TWin32Process>(Info.hProcess);
  }
};

} // namespace

std::unique_ptr<TShell> MakeWin32Shell() { return std::make_unique<TWin32Shell>(); }

} // namespace hivesweep
