#include "platform/posix/PosixStorage.h"

#include <cerrno>
#include <memory>

#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>

#include "platform/Text.h"
#include "platform/posix/FileParts.h"
#include "platform/posix/LocalTime.h"

namespace hivesweep {

namespace {

struct TFolderCloser {
  void operator()(DIR *Folder) const { closedir(Folder); }
};

// So that a new name stays, whatever happens to the machine. A disk that can't do that
// has done all it can.
void FlushFolderOf(const std::string &Path) {
  const std::string Folder = Path.substr(0, Path.rfind('/') + 1);
  const TDescriptor Opened(open(Folder.empty() ? "." : Folder.c_str(), O_RDONLY | O_CLOEXEC));
  if (Opened.IsOpen())
    fsync(Opened.Get());
}

} // namespace

TError TPosixStorage::List(std::u16string_view Folder, std::vector<TStoredFile> &Out) {
  Out.clear();
  if (!IsName(Folder))
    return Errno(ENOENT);
  const std::unique_ptr<DIR, TFolderCloser> Opened(opendir(ToUtf8(Folder).c_str()));
  if (!Opened)
    return errno == ENOENT ? TError() : Errno(errno);
  for (;;) {
    errno = 0;
    // cppcheck-suppress readdirCalled ; one thread, and the newer one is on its way out
    const dirent *const Entry = readdir(Opened.get());
    if (!Entry)
      return errno == 0 ? TError() : Errno(errno);
    const std::string_view Name = Entry->d_name;
    struct stat Found = {};
    // What has gone meanwhile, and a link that leads nowhere, is no file.
    if (Name == "." || Name == ".." || fstatat(dirfd(Opened.get()), Entry->d_name, &Found, 0) != 0)
      continue;
    Out.push_back({FromUtf8(Name), static_cast<std::uint64_t>(Found.st_size),
                   LocalTime(Found.st_mtime), S_ISDIR(Found.st_mode)});
  }
}

TError TPosixStorage::Read(std::u16string_view Path, std::string &Out) {
  return ReadWholeFile(Path, Out);
}

TError TPosixStorage::Write(std::u16string_view Path, std::string_view Bytes) {
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::string Name = ToUtf8(Path);
  if (IsReadOnly(Name))
    return Errno(EACCES);
  if (IsSpecial(Name))
    return NoRegularFile();
  TDescriptor File(open(Name.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666));
  const bool Written = File.IsOpen() && WriteAndFlush(File.Get(), Bytes) && File.Close();
  return Written ? TError() : Errno(errno);
}

TError TPosixStorage::Rename(std::u16string_view From, std::u16string_view To) {
  if (!IsName(From) || !IsName(To))
    return Errno(ENOENT);
  const std::string Target = ToUtf8(To);
  if (IsReadOnly(Target))
    return Errno(EACCES);
  if (rename(ToUtf8(From).c_str(), Target.c_str()) != 0)
    return Errno(errno);
  FlushFolderOf(Target);
  return {};
}

TError TPosixStorage::Remove(std::u16string_view Path) {
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::string Name = ToUtf8(Path);
  if (IsReadOnly(Name))
    return Errno(EACCES);
  const bool IsGone = unlink(Name.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
  return IsGone ? TError() : Errno(errno);
}

TError TPosixStorage::CreateFolder(std::u16string_view Path) {
  if (!CheckFolder(Path))
    return {};
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::size_t Last = Path.rfind(u'/');
  if (Last != std::u16string_view::npos && Last > 0)
    if (TError Error = CreateFolder(Path.substr(0, Last)); Error)
      return Error;
  // Someone else may have been faster.
  return mkdir(ToUtf8(Path).c_str(), 0777) == 0 ? TError() : CheckFolder(Path);
}

void TPosixStorage::MakeWritable(std::u16string_view Path) {
  if (IsName(Path) && IsReadOnly(ToUtf8(Path)))
    chmod(ToUtf8(Path).c_str(), 0644);
}

} // namespace hivesweep
