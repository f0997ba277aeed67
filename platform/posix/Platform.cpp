#include "platform/Platform.h"

#include "platform/posix/LocalTime.h"
#include "platform/posix/PosixProfiles.h"
#include "platform/posix/PosixStorage.h"

namespace hivesweep {

namespace {

class TPosixClock final : public TClock {
public:
  TLocalTime Now() override { return LocalTime(std::time(nullptr)); }

  std::u16string DateSeparator() override { return u"/"; }

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
  std::unique_ptr<TProcess> Start(std::u16string_view, std::u16string_view) override {
    return nullptr;
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view) override { return {}; }
};

} // namespace

TPlatform MakeLocalServices() {
  TPlatform Platform;
  Platform.Profiles = std::make_unique<TPosixProfiles>();
  Platform.Storage = std::make_unique<TPosixStorage>();
  Platform.Clock = std::make_unique<TPosixClock>();
  Platform.Messages = std::make_unique<TNoMessages>();
  Platform.Shell = std::make_unique<TNoShell>();
  return Platform;
}

std::optional<TPlatform> MakeLivePlatform() { return std::nullopt; }

} // namespace hivesweep
