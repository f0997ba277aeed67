#include "platform/IniProfiles.h"
#include "platform/win32/FileParts.h"
#include "platform/win32/Hosts.h"

namespace hivesweep {

namespace {

class TWin32Profiles final : public TIniProfiles {
public:
  TWin32Profiles() : TIniProfiles(TUnmarked::CodePage) {}

  std::optional<TFileStamp> Stamp(std::u16string_view Path) override {
    if (HoldsZero(Path))
      return std::nullopt;
    WIN32_FILE_ATTRIBUTE_DATA Found = {};
    if (!GetFileAttributesExW(Wide(std::u16string(Path)), GetFileExInfoStandard, &Found)) {
      const DWORD Error = GetLastError();
      if (Error == ERROR_FILE_NOT_FOUND || Error == ERROR_PATH_NOT_FOUND)
        return TFileStamp{};
      return std::nullopt;
    }
    // Disks keep times in steps of up to two seconds: a change that follows within
    // one step leaves the same time.
    constexpr std::uint64_t Settled = 3 * 10'000'000ull;
    FILETIME Now = {};
    GetSystemTimeAsFileTime(&Now);
    const std::uint64_t Modified = Number(Found.ftLastWriteTime);
    if (IsWithin(Settled, Modified, Number(Now)))
      return std::nullopt;
    return TFileStamp{Modified, Number(Found.ftCreationTime),
                      static_cast<std::uint64_t>(Found.nFileSizeHigh) << 32 | Found.nFileSizeLow};
  }
};

} // namespace

std::unique_ptr<TProfiles> MakeWin32Profiles() { return std::make_unique<TWin32Profiles>(); }

} // namespace hivesweep
