#include "platform/posix/FileParts.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <optional>

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

// A byte that is no UTF-8 becomes U+DC00 and the byte.
std::u16string PathFromBytes(std::string_view Bytes) {
  std::u16string Out;
  while (!Bytes.empty()) {
    std::size_t Length = 1;
    std::optional<std::u16string> Part;
    while (Length <= 4 && !(Part = FromStrictUtf8(Bytes.substr(0, Length))))
      ++Length;
    if (!Part)
      Length = 1;
    Out += Part ? *Part
                : std::u16string(
                      1, static_cast<char16_t>(0xDC00 + static_cast<unsigned char>(Bytes.front())));
    Bytes.remove_prefix(std::min(Length, Bytes.size()));
  }
  return Out;
}

std::string BytesOfPath(std::u16string_view Path) {
  const auto IsByte = [](char16_t Unit) { return Unit >= 0xDC80 && Unit <= 0xDCFF; };
  const auto IsFirstHalf = [](char16_t Unit) { return Unit >= 0xD800 && Unit <= 0xDBFF; };
  std::string Out;
  while (!Path.empty()) {
    std::size_t End = 0;
    while (End < Path.size() && !IsByte(Path[End]))
      End += IsFirstHalf(Path[End]) ? 2 : 1;
    End = std::min(End, Path.size());
    Out += ToUtf8(Path.substr(0, End));
    if (End < Path.size())
      Out.push_back(static_cast<char>(Path[End++] & 0xFF));
    Path.remove_prefix(End);
  }
  return Out;
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
