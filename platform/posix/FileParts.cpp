#include "platform/posix/FileParts.h"

#include <cerrno>
#include <cstring>

#include <sys/stat.h>

#include "platform/Text.h"

namespace hivesweep {

TError Errno(int Number) { return SystemError(static_cast<std::uint32_t>(Number)); }

std::u16string SystemErrorText(std::uint32_t Number) {
  return FromUtf8(std::strerror(static_cast<int>(Number)));
}

bool WriteAndFlush(int File, std::string_view Bytes) {
  while (!Bytes.empty()) {
    const ssize_t Written = write(File, Bytes.data(), Bytes.size());
    if (Written < 0 && errno == EINTR)
      continue;
    if (Written < 0)
      return false;
    Bytes.remove_prefix(static_cast<std::size_t>(Written));
  }
  return fsync(File) == 0 || errno == EINVAL; // a pipe or a device
}

bool IsName(std::u16string_view Path) {
  return !Path.empty() && Path.find(u'\0') == std::u16string_view::npos;
}

bool IsReadOnly(const std::string &Path) {
  struct stat Found = {};
  return stat(Path.c_str(), &Found) == 0 && (Found.st_mode & 0222) == 0;
}

bool IsSpecial(const std::string &Path) {
  struct stat Found = {};
  return stat(Path.c_str(), &Found) == 0 && !S_ISREG(Found.st_mode) && !S_ISDIR(Found.st_mode);
}

} // namespace hivesweep
