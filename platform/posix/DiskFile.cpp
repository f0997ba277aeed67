#include "platform/DiskFile.h"

#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/stat.h>

#include "platform/Text.h"
#include "platform/posix/FileParts.h"

namespace hivesweep {

namespace {

// Where Path leads when the links at its end are followed. There need not be anything.
std::string EndOfLinks(std::string Path) {
  constexpr int MostLinks = 40; // the system follows no more
  for (int Link = 0; Link < MostLinks; ++Link) {
    std::string Target(4096, '\0');
    const ssize_t Length = readlink(Path.c_str(), Target.data(), Target.size());
    if (Length <= 0)
      return Path;
    Target.resize(static_cast<std::size_t>(Length));
    Path = Target.front() == '/' ? Target : Path.substr(0, Path.rfind('/') + 1) + Target;
  }
  return Path;
}

bool IsSameFile(const struct stat &Left, const struct stat &Right) {
  return Left.st_dev == Right.st_dev && Left.st_ino == Right.st_ino;
}

// Writes into what is there.
TError WriteInto(const std::string &Name, std::string_view Bytes) {
  TDescriptor File(open(Name.c_str(), O_WRONLY | O_TRUNC | O_NOCTTY | O_CLOEXEC));
  const bool Written = File.IsOpen() && WriteAndFlush(File.Get(), Bytes) && File.Close();
  return Written ? TError() : Errno(errno);
}

} // namespace

TError ReadWholeFile(std::u16string_view Path, std::string &Out, std::size_t Limit) {
  Out.clear();
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::string Name = BytesOfPath(Path);
  if (IsSpecial(Name))
    return NoRegularFile();
  const TDescriptor File(open(Name.c_str(), O_RDONLY | O_CLOEXEC));
  struct stat Found = {};
  if (!File.IsOpen() || fstat(File.Get(), &Found) != 0)
    return Errno(errno);
  if (Found.st_size > 0 && static_cast<std::uint64_t>(Found.st_size) > Limit)
    return FileTooLarge(Limit);
  // Read to its end, whatever size is told: the file may grow.
  constexpr std::size_t Part = 1u << 18;
  for (;;) {
    const std::size_t Old = Out.size();
    Out.resize(Old + Part);
    const ssize_t Count = read(File.Get(), Out.data() + Old, Part);
    const int Error = errno;
    Out.resize(Old + (Count > 0 ? static_cast<std::size_t>(Count) : 0));
    if (Out.size() > Limit) {
      Out.clear();
      return FileTooLarge(Limit);
    }
    if (Count == 0)
      return {};
    if (Count < 0 && Error != EINTR) {
      Out.clear();
      return Errno(Error);
    }
  }
}

TError WriteWholeFile(std::u16string_view Path, std::string_view Bytes) {
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::string Name = BytesOfPath(Path);
  struct stat Old = {};
  const bool Exists = stat(Name.c_str(), &Old) == 0;
  if (!Exists && errno != ENOENT)
    return Errno(errno);
  // A rename would replace it.
  if (IsReadOnly(Name))
    return Errno(EACCES);
  const std::string Target = EndOfLinks(Name);
  if (Exists) {
    // Links of the system's own, such as /dev/stdout, don't always say where they lead.
    struct stat End = {};
    const bool IsFound = stat(Target.c_str(), &End) == 0 && IsSameFile(Old, End);
    if (!S_ISREG(Old.st_mode) || !IsFound)
      return WriteInto(Name, Bytes);
  }
  const std::string Folder = Target.substr(0, Target.rfind('/') + 1);
  const std::string Prefix = Folder + "~" + std::to_string(getpid()) + "-";
  for (int Try = 0;; ++Try) {
    const std::string Temporary = Prefix + std::to_string(Try) + ".tmp";
    TDescriptor File(open(Temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!File.IsOpen()) {
      if (errno == EEXIST && Try < 1000)
        continue;
      return Errno(errno);
    }
    if ((!Exists || fchmod(File.Get(), Old.st_mode & 0777) == 0) &&
        WriteAndFlush(File.Get(), Bytes) && File.Close() &&
        rename(Temporary.c_str(), Target.c_str()) == 0)
      return {};
    const int Error = errno;
    unlink(Temporary.c_str());
    return Errno(Error);
  }
}

TError CheckFolder(std::u16string_view Path) {
  if (!IsName(Path))
    return Errno(ENOENT);
  struct stat Found = {};
  if (stat(BytesOfPath(Path).c_str(), &Found) != 0)
    return Errno(errno);
  return S_ISDIR(Found.st_mode) ? TError() : Errno(ENOTDIR);
}

std::u16string AbsolutePath(std::u16string_view Path) {
  if (Path.empty() || Path.starts_with(u'/'))
    return std::u16string(Path);
  std::string Current(4096, '\0');
  if (!getcwd(Current.data(), Current.size()))
    return std::u16string(Path);
  Current.resize(std::strlen(Current.c_str()));
  return JoinPath(PathFromBytes(Current), Path);
}

std::u16string JoinPath(std::u16string_view Folder, std::u16string_view Name) {
  std::u16string Out(Folder);
  if (!Out.empty() && Out.back() != u'/')
    Out.push_back(u'/');
  return Out.append(Name);
}

} // namespace hivesweep
