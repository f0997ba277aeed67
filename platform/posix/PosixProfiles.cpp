#include "platform/posix/PosixProfiles.h"

#include <cerrno>
#include <ctime>

#include <sys/stat.h>

#include "platform/Text.h"
#include "platform/posix/FileParts.h"

namespace hivesweep {

namespace {

std::uint64_t Nanoseconds(const timespec &Time) {
  return static_cast<std::uint64_t>(Time.tv_sec) * 1'000'000'000u +
         static_cast<std::uint64_t>(Time.tv_nsec);
}

} // namespace

std::optional<TFileStamp> TPosixProfiles::Stamp(std::u16string_view Path) {
  struct stat Found = {};
  if (stat(BytesOfPath(Path).c_str(), &Found) != 0) {
    if (errno == ENOENT || errno == ENOTDIR)
      return TFileStamp{};
    return std::nullopt;
  }
  // Disks keep times in steps: a change that follows within one step leaves the
  // same time.
  constexpr std::uint64_t Settled = 3'000'000'000u;
  timespec Now = {};
  clock_gettime(CLOCK_REALTIME, &Now);
  const std::uint64_t Modified = Nanoseconds(Found.st_mtim);
  if (IsWithin(Settled, Modified, Nanoseconds(Now)))
    return std::nullopt;
  return TFileStamp{Modified, Nanoseconds(Found.st_ctim),
                    static_cast<std::uint64_t>(Found.st_size)};
}

} // namespace hivesweep
