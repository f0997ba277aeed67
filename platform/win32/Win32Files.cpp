#include "platform/Drives.h"
#include "platform/win32/Hosts.h"
#include "platform/win32/LongPath.h"
#include "platform/win32/Win32.h"

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

// Only what says for certain that there is nothing of that name.
bool MeansMissing(DWORD Error) {
  switch (Error) {
  case ERROR_FILE_NOT_FOUND:
  case ERROR_PATH_NOT_FOUND: // a folder on the way is missing, or is a file
  case ERROR_INVALID_NAME:
  case ERROR_BAD_PATHNAME:
  case ERROR_DIRECTORY:
  case ERROR_FILENAME_EXCED_RANGE:
    return true;
  default:
    return false;
  }
}

// A search through a folder; closes it.
class TSearch {
public:
  TSearch(const std::u16string &Pattern, WIN32_FIND_DATAW &First)
      : Owned_(FindFirstFileW(Wide(Pattern), &First)) {}
  TSearch(const TSearch &) = delete;
  TSearch &operator=(const TSearch &) = delete;
  ~TSearch() {
    if (IsOpen())
      FindClose(Owned_);
  }

  bool IsOpen() const { return Owned_ != INVALID_HANDLE_VALUE; }
  bool Next(WIN32_FIND_DATAW &Out) const { return FindNextFileW(Owned_, &Out) != 0; }

private:
  HANDLE Owned_;
};

class TWin32Files final : public TFileSystem {
public:
  TWin32Files() {
    // Else a look at an empty disk drive opens a message box of the system's.
    SetErrorMode(SetErrorMode(0) | SEM_FAILCRITICALERRORS);
  }

  TPathState Look(std::u16string_view Path) override {
    const bool OnServer = HasServer(Path);
    if (!OnServer && !HasDrive(Path))
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
    if (!MeansMissing(Error))
      return TPathState::Unknown;
    return OnServer && !CanReachShare(Path) ? TPathState::Unknown : TPathState::Missing;
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
      const std::u16string_view Name = FromWide(Found.cFileName);
      if (Name != u"." && Name != u".." &&
          !Take({Name, (Found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0}))
        return false;
    } while (Search.Next(Found));
    return GetLastError() == ERROR_NO_MORE_FILES;
  }

  bool CreateFolder(std::u16string_view Path) override {
    if ((!HasDrive(Path) && !HasServer(Path)) || HasImpossibleName(Path))
      return false;
    return CreateDirectoryW(Wide(SystemPath(Path, NewFolderRoom)), nullptr) != 0;
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
