#include "platform/Text.h"
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

  std::u16string UserKey() override {
    // The only call that says which key it is, also for a process that took on another
    // user's rights, whose own user is somebody else.
    using TNtQueryKey = LONG(WINAPI *)(HANDLE, int, void *, ULONG, ULONG *);
    const auto NtQueryKey = reinterpret_cast<TNtQueryKey>(FindFunction(L"ntdll.dll", "NtQueryKey"));
    HKEY Key = nullptr;
    if (!NtQueryKey || RegOpenKeyExW(HKEY_CURRENT_USER, L"Software", 0, KEY_READ, &Key) != 0)
      return {};
    constexpr int NameInformation = 3;
    struct {
      ULONG Size;
      wchar_t Path[512];
    } Name = {};
    ULONG Needed = 0;
    const LONG Status = NtQueryKey(Key, NameInformation, &Name, sizeof Name, &Needed);
    RegCloseKey(Key);
    if (Status < 0 || Name.Size > sizeof Name.Path)
      return {};
    // "\REGISTRY\USER\S-1-5-21-...\Software"
    std::u16string_view Path(FromWide(Name.Path), Name.Size / sizeof(wchar_t));
    constexpr std::u16string_view Users = u"\\registry\\user\\";
    if (FindNoAsciiCase(Path, Users) != 0)
      return {};
    Path.remove_prefix(Users.size());
    return std::u16string(Path.substr(0, Path.find(u'\\')));
  }
};

} // namespace

std::unique_ptr<TSystem> MakeWin32System() { return std::make_unique<TWin32System>(); }

} // namespace hivesweep
