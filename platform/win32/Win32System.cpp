#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

class TWin32System final : public TSystem {
public:
  bool IsWow64() override {
    using TIsWow64Process = BOOL(WINAPI *)(HANDLE, BOOL *);
    const auto IsWow64Process =
        reinterpret_cast<TIsWow64Process>(FindFunction(L"kernel32.dll", "IsWow64Process"));
    BOOL Answer = FALSE;
    return IsWow64Process && IsWow64Process(GetCurrentProcess(), &Answer) && Answer;
  }

  std::optional<std::u16string> Environment(std::u16string_view Name) override {
    if (Name.empty() || HoldsZero(Name))
      return std::nullopt;
    const std::u16string Ended(Name);
    // An empty variable and a missing one differ in the error alone.
    SetLastError(ERROR_SUCCESS);
    std::u16string Value = GrowingText([&](wchar_t *Units, DWORD Count) {
      return GetEnvironmentVariableW(Wide(Ended), Units, Count);
    });
    if (Value.empty() && GetLastError() != ERROR_SUCCESS)
      return std::nullopt;
    return Value;
  }
};

} // namespace

std::unique_ptr<TSystem> MakeWin32System() { return std::make_unique<TWin32System>(); }

} // namespace hivesweep
