#include "platform/win32/FileParts.h"
#include "platform/win32/Hosts.h"
#include "platform/win32/LongPath.h"

namespace hivesweep {

namespace {

// Not by the difference that the clock has today: a file would change its time when
// summer time begins.
TLocalTime LocalTime(const FILETIME &Time) {
  SYSTEMTIME Universal = {};
  SYSTEMTIME Local = {};
  if (!FileTimeToSystemTime(&Time, &Universal) ||
      !SystemTimeToTzSpecificLocalTime(nullptr, &Universal, &Local))
    return {};
  return {Local.wYear, Local.wMonth, Local.wDay, Local.wHour, Local.wMinute, Local.wSecond};
}

TError ErrorUnless(BOOL Done) { return Done ? TError() : LastError(); }

std::u16string StoragePath(std::u16string_view Path, std::size_t Room = PathRoom) {
  return SystemPath(AbsolutePath(Path), Room);
}

class TWin32HeldFile final : public THeldFile {
public:
  explicit TWin32HeldFile(TFileHandle File) : File_(std::move(File)) {}

private:
  TFileHandle File_;
};

// That a file is read-only is asked beforehand: not every disk keeps an administrator
// from writing or replacing it.
class TWin32Storage final : public TStorage {
public:
  TError List(std::u16string_view Folder, std::vector<TStoredFile> &Out) override {
    Out.clear();
    if (HoldsZero(Folder))
      return SystemError(ERROR_INVALID_NAME);
    WIN32_FIND_DATAW Found = {};
    const TSearch Search(StoragePath(JoinPath(Folder, u"*")), Found);
    if (!Search.IsOpen()) {
      const DWORD Error = GetLastError();
      const bool IsMissing = Error == ERROR_FILE_NOT_FOUND || Error == ERROR_PATH_NOT_FOUND;
      return IsMissing ? TError() : SystemError(Error);
    }
    do {
      if (!IsOwnOrParent(Found))
        Out.push_back({FromWide(Found.cFileName),
                       static_cast<std::uint64_t>(Found.nFileSizeHigh) << 32 | Found.nFileSizeLow,
                       LocalTime(Found.ftLastWriteTime),
                       (Found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0});
    } while (Search.Next(Found));
    return GetLastError() == ERROR_NO_MORE_FILES ? TError() : LastError();
  }

  TError Read(std::u16string_view Path, std::string &Out) override {
    return ReadWholeFile(Path, Out);
  }

  TError ReadFront(std::u16string_view Path, std::size_t Size, std::string &Out) override {
    Out.clear();
    if (HoldsZero(Path))
      return SystemError(ERROR_INVALID_NAME);
    const TFileHandle File = OpenToRead(StoragePath(Path), 0);
    DWORD Count = 0;
    Out.resize(Size);
    const bool Read = File.IsOpen() && ReadFile(File.Get(), Out.data(), static_cast<DWORD>(Size),
                                                &Count, nullptr) != 0;
    const DWORD Error = GetLastError();
    Out.resize(Read ? Count : 0);
    return Read ? TError() : SystemError(Error);
  }

  TError Write(std::u16string_view Path, std::string_view Bytes) override {
    return WriteAs(CREATE_ALWAYS, Path, Bytes);
  }

  TError WriteNew(std::u16string_view Path, std::string_view Bytes) override {
    return WriteAs(CREATE_NEW, Path, Bytes);
  }

  TError Rename(std::u16string_view From, std::u16string_view To) override {
    return RenameBy(RenameOver, From, To);
  }

  TError RenameNew(std::u16string_view From, std::u16string_view To) override {
    return RenameBy(RenameToNew, From, To);
  }

  TError Remove(std::u16string_view Path) override {
    if (HoldsZero(Path))
      return SystemError(ERROR_INVALID_NAME);
    if (DeleteFileW(Wide(StoragePath(Path))))
      return {};
    const DWORD Error = GetLastError();
    return MeansMissing(Error) ? TError() : SystemError(Error);
  }

  TError CreateFolder(std::u16string_view Path) override {
    if (!CheckFolder(Path))
      return {};
    if (HoldsZero(Path))
      return SystemError(ERROR_INVALID_NAME);
    const std::u16string Whole = AbsolutePath(Path);
    const std::size_t Last = Whole.rfind(u'\\');
    // "C:" and "\\server" are made by nobody.
    if (Last != std::u16string::npos && Last > 2)
      if (TError Error = CreateFolder(Whole.substr(0, Last)); Error)
        return Error;
    const BOOL Made = CreateDirectoryW(Wide(SystemPath(Whole, NewFolderRoom)), nullptr);
    // Someone else may have been faster.
    return Made ? TError() : CheckFolder(Whole);
  }

  void MakeWritable(std::u16string_view Path) override {
    if (HoldsZero(Path))
      return;
    const std::u16string Name = StoragePath(Path);
    if (IsReadOnly(Name))
      SetFileAttributesW(Wide(Name), FILE_ATTRIBUTE_NORMAL);
  }

  // Others may read who holds it, and can't write.
  THolding Hold(std::u16string_view Path) override {
    THolding Out;
    TFileHandle File(HoldsZero(Path)
                         ? INVALID_HANDLE_VALUE
                         : CreateFileW(Wide(StoragePath(Path)), GENERIC_WRITE, FILE_SHARE_READ,
                                       nullptr, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL, nullptr));
    const DWORD Error = HoldsZero(Path) ? ERROR_INVALID_NAME : GetLastError();
    if (File.IsOpen()) {
      // Who does not learn this is refused all the same.
      const std::string Text = HolderText(GetCurrentProcessId(), ProgramName());
      DWORD Written = 0;
      WriteFile(File.Get(), Text.data(), static_cast<DWORD>(Text.size()), &Written, nullptr);
      Out.File = std::make_unique<TWin32HeldFile>(std::move(File));
    } else if (Error == ERROR_SHARING_VIOLATION) {
      Out.IsHeldElsewhere = true;
      std::string Text;
      ReadFront(Path, 256, Text);
      ReadHolder(Text, Out);
    } else {
      Out.Error = SystemError(Error);
    }
    return Out;
  }

private:
  // Creation is what CreateFileW is to do with a file that is there.
  static TError WriteAs(DWORD Creation, std::u16string_view Path, std::string_view Bytes) {
    if (HoldsZero(Path))
      return SystemError(ERROR_INVALID_NAME);
    const std::u16string Name = StoragePath(Path);
    if (IsReadOnly(Name))
      return SystemError(ERROR_ACCESS_DENIED);
    const TFileHandle File(CreateFileW(Wide(Name), GENERIC_WRITE, 0, nullptr, Creation,
                                       FILE_ATTRIBUTE_NORMAL, nullptr));
    return ErrorUnless(File.IsOpen() && WriteAndFlush(File.Get(), Bytes));
  }

  static bool RenameToNew(const std::u16string &SystemFrom, const std::u16string &SystemTo) {
    return MoveFileExW(Wide(SystemFrom), Wide(SystemTo), MOVEFILE_WRITE_THROUGH) != 0;
  }

  static TError RenameBy(bool (*Call)(const std::u16string &, const std::u16string &),
                         std::u16string_view From, std::u16string_view To) {
    if (HoldsZero(From) || HoldsZero(To))
      return SystemError(ERROR_INVALID_NAME);
    const std::u16string Target = StoragePath(To);
    return IsReadOnly(Target) ? SystemError(ERROR_ACCESS_DENIED)
                              : ErrorUnless(Call(StoragePath(From), Target));
  }

  // "hivesweep.exe".
  static std::u16string ProgramName() {
    const std::u16string Path = GrowingText(
        [](wchar_t *Units, DWORD Count) { return GetModuleFileNameW(nullptr, Units, Count); });
    return Path.substr(Path.rfind(u'\\') + 1);
  }
};

} // namespace

std::unique_ptr<TStorage> MakeWin32Storage() { return std::make_unique<TWin32Storage>(); }

} // namespace hivesweep
