#include "platform/posix/PosixStorage.h"

#include <cerrno>
#include <cstdio>
#include <memory>
#include <utility>

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
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

// Open has the flags of open() that decide about a file that is there.
TError WriteAs(int Open, std::u16string_view Path, std::string_view Bytes) {
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::string Name = BytesOfPath(Path);
  if (IsReadOnly(Name))
    return Errno(EACCES);
  if (IsSpecial(Name))
    return NoRegularFile();
  TDescriptor File(open(Name.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC | Open, 0666));
  const bool Written = File.IsOpen() && WriteAndFlush(File.Get(), Bytes) && File.Close();
  return Written ? TError() : Errno(errno);
}

// Some disks know only the one way, some only the other.
bool RenameToNew(const std::string &From, const std::string &To) {
  if (renameat2(AT_FDCWD, From.c_str(), AT_FDCWD, To.c_str(), RENAME_NOREPLACE) == 0)
    return true;
  return (errno == EINVAL || errno == ENOSYS) && link(From.c_str(), To.c_str()) == 0 &&
         unlink(From.c_str()) == 0;
}

TError RenameBy(bool (*Call)(const std::string &, const std::string &), std::u16string_view From,
                std::u16string_view To) {
  if (!IsName(From) || !IsName(To))
    return Errno(ENOENT);
  const std::string Target = BytesOfPath(To);
  if (IsReadOnly(Target))
    return Errno(EACCES);
  if (!Call(BytesOfPath(From), Target))
    return Errno(errno);
  FlushFolderOf(Target);
  return {};
}

// The lock goes with its descriptor.
class TPosixHeldFile final : public THeldFile {
public:
  explicit TPosixHeldFile(TDescriptor File) : File_(std::move(File)) {}

private:
  TDescriptor File_;
};

} // namespace

TError TPosixStorage::List(std::u16string_view Folder, std::vector<TStoredFile> &Out) {
  Out.clear();
  if (!IsName(Folder))
    return Errno(ENOENT);
  const std::unique_ptr<DIR, TFolderCloser> Opened(opendir(BytesOfPath(Folder).c_str()));
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
    Out.push_back({PathFromBytes(Name), static_cast<std::uint64_t>(Found.st_size),
                   LocalTime(Found.st_mtime), S_ISDIR(Found.st_mode)});
  }
}

TError TPosixStorage::Read(std::u16string_view Path, std::string &Out) {
  return ReadWholeFile(Path, Out);
}

TError TPosixStorage::ReadFront(std::u16string_view Path, std::size_t Size, std::string &Out) {
  Out.assign(Size, '\0');
  std::size_t Count = 0;
  if (IsName(Path) && IsSpecial(BytesOfPath(Path))) {
    Out.clear();
    return NoRegularFile();
  }
  const TDescriptor File(IsName(Path) ? open(BytesOfPath(Path).c_str(), O_RDONLY | O_CLOEXEC) : -1);
  ssize_t Part = File.IsOpen() ? 1 : -1;
  while (Part > 0 && Count < Size) {
    Part = read(File.Get(), Out.data() + Count, Size - Count);
    if (Part < 0 && errno == EINTR)
      Part = 1;
    else if (Part > 0)
      Count += static_cast<std::size_t>(Part);
  }
  const int Error = errno;
  Out.resize(Count);
  return Part < 0 ? Errno(IsName(Path) ? Error : ENOENT) : TError();
}

TError TPosixStorage::Write(std::u16string_view Path, std::string_view Bytes) {
  return WriteAs(O_TRUNC, Path, Bytes);
}

TError TPosixStorage::WriteNew(std::u16string_view Path, std::string_view Bytes) {
  return WriteAs(O_EXCL, Path, Bytes);
}

TError TPosixStorage::Rename(std::u16string_view From, std::u16string_view To) {
  return RenameBy([](const std::string &Old,
                     const std::string &New) { return rename(Old.c_str(), New.c_str()) == 0; },
                  From, To);
}

TError TPosixStorage::RenameNew(std::u16string_view From, std::u16string_view To) {
  return RenameBy(RenameToNew, From, To);
}

TError TPosixStorage::Remove(std::u16string_view Path) {
  if (!IsName(Path))
    return Errno(ENOENT);
  const std::string Name = BytesOfPath(Path);
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
  return mkdir(BytesOfPath(Path).c_str(), 0777) == 0 ? TError() : CheckFolder(Path);
}

void TPosixStorage::MakeWritable(std::u16string_view Path) {
  if (IsName(Path) && IsReadOnly(BytesOfPath(Path)))
    chmod(BytesOfPath(Path).c_str(), 0644);
}

THolding TPosixStorage::Hold(std::u16string_view Path) {
  THolding Out;
  TDescriptor File(
      IsName(Path) ? open(BytesOfPath(Path).c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0666) : -1);
  if (!File.IsOpen()) {
    Out.Error = Errno(IsName(Path) ? errno : ENOENT);
  } else if (flock(File.Get(), LOCK_EX | LOCK_NB) == 0) {
    // Who does not learn this is refused all the same.
    const std::string Text =
        HolderText(static_cast<std::uint32_t>(getpid()), FromUtf8(program_invocation_short_name));
    if (ftruncate(File.Get(), 0) != 0 || write(File.Get(), Text.data(), Text.size()) < 0)
      Out.Holder.clear();
    Out.File = std::make_unique<TPosixHeldFile>(std::move(File));
  } else if (errno == EWOULDBLOCK) {
    Out.IsHeldElsewhere = true;
    std::string Text;
    ReadFront(Path, 256, Text);
    ReadHolder(Text, Out);
  } else {
    Out.Error = Errno(errno);
  }
  return Out;
}

} // namespace hivesweep
