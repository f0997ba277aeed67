#include "platform/win32/Hosts.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

class TWin32Clock final : public TClock {
public:
  TLocalTime Now() override {
    SYSTEMTIME Time = {};
    GetLocalTime(&Time);
    return {Time.wYear, Time.wMonth, Time.wDay, Time.wHour, Time.wMinute, Time.wSecond};
  }

  std::u16string DateSeparator() override {
    wchar_t Separator[16] = {};
    if (GetLocaleInfoW(LOCALE_USER_DEFAULT, LOCALE_SDATE, Separator,
                       static_cast<int>(std::size(Separator))) == 0)
      return u"/";
    return FromWide(Separator);
  }

  void Pause(std::uint32_t Milliseconds) override { Sleep(Milliseconds); }
};

} // namespace

std::unique_ptr<TClock> MakeWin32Clock() { return std::make_unique<TWin32Clock>(); }

} // namespace hivesweep
