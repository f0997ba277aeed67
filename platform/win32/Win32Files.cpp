#include "platform/Drives.h"
#include "platform/win32/FileParts.h"
#include "platform/win32/Hosts.h"
#include "platform/win32/LongPath.h"

namespace hivesweep {

namespace {

bool IsSeparator(char16_t Unit) { return Unit == u'\\' || Unit == u'/'; }

bool HasDrive(std::u16string_view Path) {
  return Path.size() >= 3 && IsDriveRoot(Path.substr(0, 3));
}

// "\\server\share\" with what follows. Not "\\?\" and "\\.\", which lead to
// devices, and looking at one may set it going.
bool HasServer(std::u16string_view Path) {
  return Path.size() > 2 && IsSeparator(Path[0]) && IsSeparator(Path[1]) && !IsSeparator(Path[2]) &&
         Path[2] != u'?' && Path[2] != u'.';
}

// The path's first two parts; empty when there is no second one.
std::u16string ShareOf(std::u16string_view ServerPath) {
  const std::size_t Share = ServerPath.find_first_of(u"\\/", 2);
  if (Share == std::u16string_view::npos || Share + 1 == ServerPath.size() ||
      IsSeparator(ServerPath[Share + 1]))
    return {};
  return std::u16string(ServerPath.substr(0, ServerPath.find_first_of(u"\\/", Share + 1))) + u"\\";
}

class TWin32Files final : public TFileSystem {
public:
  TWin32Files() {
    // Else a look at an empty disk drive opens a message box of the system's.
    SetErrorMode(SetErrorMode(0) | SEM_FAILCRITICALERRORS);
  }

  TPathState Look(std::u16string_view Path) override {
    if (!HasServer(Path) && !HasDrive(Path))
      return TPathState::Unknown;
    if (HasImpossibleName(Path))
      return TPathState::Missing;
    // A last backslash says "folder" to the system, and a file would be missed.
    while (IsSeparator(Path.back()) && !IsDriveRoot(Path))
      Path.remove_suffix(1);

    const std::u16string Name = SystemPath(Path);
    const DWORD Attributes = GetFileAttributesW(Wide(Name));
    if (Attributes != INVALID_FILE_ATTRIBUTES)
      return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? TPathState::Folder : TPathState::File;
    const DWORD Error = GetLastError();
    // Something holds it so tightly (the page file) that it can't be looked at.
    if (Error == ERROR_SHARING_VIOLATION)
      return TPathState::File;
    return IsMissing(Error, Path) ? TPathState::Missing : TPathState::Unknown;
  }

  bool List(std::u16string_view Folder,
            const std::function<bool(const TFolderEntry &Entry)> &Take) override {
    if ((!HasServer(Folder) && !HasDrive(Folder)) || HasImpossibleName(Folder))
      return false;
    WIN32_FIND_DATAW Found = {};
    const TSearch Search(SystemPath(std::u16string(Folder) + u"\\*"), Found);
    if (!Search.IsOpen())
      return false;
    do {
      if (!IsOwnOrParent(Found) &&
          !Take({FromWide(Found.cFileName),
                 (Found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0,
                 (Found.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0}))
        return false;
    } while (Search.Next(Found));
    return GetLastError() == ERROR_NO_MORE_FILES;
  }

  bool CreateFolder(std::u16string_view Path) override {
    if ((!HasDrive(Path) && !HasServer(Path)) || HasImpossibleName(Path))
      return false;
    return CreateDirectoryW(Wide(SystemPath(Path, NewFolderRoom)), nullptr) != 0;
  }

  TFileStatus ReadContent(std::u16string_view Path, TFileContent &Out) override {
    Out = {};
    if (const TFileStatus Status = CheckPath(Path); Status != TFileStatus::Ok)
      return Status;
    // Without this flag a folder could not be told from what the user may not read.
    const TFileHandle File = OpenToRead(SystemPath(Path), FILE_FLAG_BACKUP_SEMANTICS);
    if (!File.IsOpen())
      return LastStatus(Path);
    BY_HANDLE_FILE_INFORMATION Found = {};
    if (!GetFileInformationByHandle(File.Get(), &Found) ||
        (Found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ||
        !ReadToEnd(File.Get(), Out.Bytes))
      return TFileStatus::Failed;
    Out.Created = Number(Found.ftCreationTime);
    Out.Accessed = Number(Found.ftLastAccessTime);
    Out.Written = Number(Found.ftLastWriteTime);
    Out.Attributes = Found.dwFileAttributes;
    return TFileStatus::Ok;
  }

  TFileStatus WriteContent(std::u16string_view Path, const TFileContent &Content) override {
    if (CheckPath(Path) != TFileStatus::Ok)
      return TFileStatus::Failed;
    const std::u16string Target = SystemPath(Path);
    TTemporaryFile Temporary(Path.substr(0, Path.find_last_of(u"\\/") + 1));
    if (!Temporary.IsMade() || !WriteAndFlush(Temporary.Get(), Content.Bytes) ||
        !SetTimes(Temporary.Get(), Content) || !Temporary.SetAttributes(Content.Attributes) ||
        !Replace(Target, Temporary))
      return LastStatus(Path);
    // A file that takes another's name is given that one's time of creation.
    const TFileHandle File(CreateFileW(Wide(Target), FILE_WRITE_ATTRIBUTES,
                                       FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                       nullptr, OPEN_EXISTING, 0, nullptr));
    if (File.IsOpen())
      SetTimes(File.Get(), Content);
    return TFileStatus::Ok;
  }

  TFileStatus RemoveFile(std::u16string_view Path) override {
    if (const TFileStatus Status = CheckPath(Path); Status != TFileStatus::Ok)
      return Status;
    return DeleteFileW(Wide(SystemPath(Path))) ? TFileStatus::Ok : LastStatus(Path);
  }

  void *DisableRedirection() override {
    void *Saved = nullptr;
    if (Disable_)
      Disable_(&Saved);
    return Saved;
  }

  void RevertRedirection(void *Saved) override {
    if (Revert_)
      Revert_(Saved);
  }

private:
  static TFileStatus CheckPath(std::u16string_view Path) {
    if (!HasServer(Path) && !HasDrive(Path))
      return TFileStatus::Failed;
    return HasImpossibleName(Path) ? TFileStatus::NotFound : TFileStatus::Ok;
  }

  static TFileStatus LastStatus(std::u16string_view Path) {
    const DWORD Error = GetLastError();
    if (Error == ERROR_ACCESS_DENIED || Error == ERROR_WRITE_PROTECT)
      return TFileStatus::Denied;
    return IsMissing(Error, Path) ? TFileStatus::NotFound : TFileStatus::Failed;
  }

  static bool SetTimes(HANDLE File, const TFileContent &Content) {
    const FILETIME Created = FileTime(Content.Created);
    const FILETIME Accessed = FileTime(Content.Accessed);
    const FILETIME Written = FileTime(Content.Written);
    return SetFileTime(File, &Created, &Accessed, &Written) != 0;
  }

  static bool Replace(const std::u16string &Target, TTemporaryFile &By) {
    if (!IsReadOnly(Target))
      return By.RenameTo(Target);
    const DWORD Old = GetFileAttributesW(Wide(Target));
    if (!SetFileAttributesW(Wide(Target), Old & ~DWORD{FILE_ATTRIBUTE_READONLY}))
      return false;
    if (By.RenameTo(Target))
      return true;
    const DWORD Error = GetLastError();
    SetFileAttributesW(Wide(Target), Old);
    SetLastError(Error);
    return false;
  }

  // After a call that the system answered with this error.
  static bool IsMissing(DWORD Error, std::u16string_view Path) {
    return MeansMissing(Error) && (!HasServer(Path) || CanReachShare(Path));
  }

  // Some networks answer "not found" for a server that is down.
  static bool CanReachShare(std::u16string_view Path) {
    const std::u16string Share = ShareOf(Path);
    return !Share.empty() && GetFileAttributesW(Wide(Share)) != INVALID_FILE_ATTRIBUTES;
  }

  using TDisable = BOOL(WINAPI *)(void **);
  using TRevert = BOOL(WINAPI *)(void *);
  TDisable Disable_ =
      reinterpret_cast<TDisable>(FindFunction(L"kernel32.dll", "Wow64DisableWow64FsRedirection"));
  TRevert Revert_ =
      reinterpret_cast<TRevert>(FindFunction(L"kernel32.dll", "Wow64RevertWow64FsRedirection"));
};

} // namespace

std::unique_ptr<TFileSystem> MakeWin32Files() { return std::make_unique<TWin32Files>(); }

} // namespace hivesweep
