#include "platform/Platform.h"

#include <ctime>

#include "platform/posix/PosixProfiles.h"

namespace hivesweep {

namespace {

class TPosixClock final : public TClock {
public:
  TLocalTime Now() override {
    const std::time_t Seconds = std::time(nullptr);
    std::tm Parts = {};
    localtime_r(&Seconds, &Parts);
    return {Parts.tm_year + 1900, Parts.tm_mon + 1, Parts.tm_mday,
            Parts.tm_hour,        Parts.tm_min,     Parts.tm_sec};
  }

  void Pause(std::uint32_t Milliseconds) override {
    const timespec Length = {static_cast<std::time_t>(Milliseconds / 1000),
                             static_cast<long>(Milliseconds % 1000) * 1'000'000};
    nanosleep(&Length, nullptr);
  }
};

// There are no windows here.
class TNoMessages final : public TMessages {
public:
  void Pump() override {}
  void Post(TWindowHandle, std::uint32_t, std::uintptr_t, std::intptr_t) override {}
};

class TNoShell final : public TShell {
public:
  bool Open(std::u16string_view, std::u16string_view) override { return false; }
};

} // namespace

TPlatform MakeLocalServices() {
  TPlatform Platform;
  Platform.Profiles = std::make_unique<TPosixProfiles>();
  Platform.Clock = std::make_unique<TPosixClock>();
  Platform.Messages = std::make_unique<TNoMessages>();
  Platform.Shell = std::make_unique<TNoShell>();
  return Platform;
}

std::optional<TPlatform> MakeLivePlatform() { return std::nullopt; }

} // namespace hivesweep
