#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

#include <shellapi.h>

namespace hivesweep {

namespace {

class TWin32Shell final : public TShell {
public:
  bool Open(std::u16string_view Target, std::u16string_view Parameters) override {
    if (Target.empty() || HoldsZero(Target) || HoldsZero(Parameters))
      return false;
    const HINSTANCE Answer =
        ShellExecuteW(nullptr, L"open", Wide(std::u16string(Target)),
                      Wide(std::u16string(Parameters)), nullptr, SW_SHOWNORMAL);
    return reinterpret_cast<INT_PTR>(Answer) > 32;
  }
};

} // namespace

std::unique_ptr<TShell> MakeWin32Shell() { return std::make_unique<TWin32Shell>(); }

} // namespace hivesweep
