#include "platform/DiskFile.h"

#include <algorithm>

#include "platform/Text.h"
#include "platform/win32/LongPath.h"
#include "platform/win32/Win32.h"

namespace hivesweep {

namespace {

TDiskError ErrorText(DWORD Error) {
  wchar_t Text[512] = {};
  const DWORD Length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, Error, 0,
                     Text, static_cast<DWORD>(std::size(Text)), nullptr);
  std::u16string_view Words = Trim({FromWide(Text), Length});
  // The caller's sentence goes on behind it.
  if (Words.ends_with(u'.'))
    Words.remove_suffix(1);
  return Words.empty() ? u"error " + ToDecimal(Error) : std::u16string(Words);
}

TDiskError LastErrorText() { return ErrorText(GetLastError()); }

// A file that is deleted in the end, unless it has been renamed by then.
class TTemporaryFile {
public:
  // Makes one of a name that is not taken, in the folder that ends in a separator.
  explicit TTemporaryFile(const std::u16string &Folder) {
    constexpr DWORD Tries = 1000;
    for (DWORD Try = 0; Try < Tries && !IsMade_; ++Try) {
      Path_ = SystemPath(Folder + u"~" + ToDecimal(GetCurrentProcessId()) + u"-" +
                         ToDecimal(GetTickCount() + Try) + u".tmp");
      Handle_ = TFileHandle(CreateFileW(Wide(Path_), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                        FILE_ATTRIBUTE_NORMAL, nullptr));
      IsMade_ = Handle_.IsOpen();
      if (!IsMade_ && GetLastError() != ERROR_FILE_EXISTS)
        break;
    }
  }
  TTemporaryFile(const TTemporaryFile &) = delete;
  TTemporaryFile &operator=(const TTemporaryFile &) = delete;
  ~TTemporaryFile() {
    Handle_.Close();
    if (IsMade_)
      DeleteFileW(Wide(Path_));
  }

  bool IsMade() const { return IsMade_; }

  bool Write(std::string_view Bytes) {
    while (!Bytes.empty()) {
      const auto Part = static_cast<DWORD>(std::min<std::size_t>(Bytes.size(), 1u << 20));
      DWORD Written = 0;
      if (!WriteFile(Handle_.Get(), Bytes.data(), Part, &Written, nullptr))
        return false;
      Bytes.remove_prefix(Written);
    }
    return FlushFileBuffers(Handle_.Get()) != 0;
  }

  bool RenameTo(const std::u16string &Target) {
    Handle_.Close();
    IsMade_ =
        !MoveFileExW(Wide(Path_), Wide(Target), MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH);
    return !IsMade_;
  }

private:
  std::u16string Path_;
  TFileHandle Handle_{INVALID_HANDLE_VALUE};
  bool IsMade_ = false;
};

} // namespace

TDiskError ReadWholeFile(std::u16string_view Path, std::string &Out) {
  Out.clear();
  if (HoldsZero(Path))
    return ErrorText(ERROR_INVALID_NAME);
  const TFileHandle File(CreateFileW(Wide(SystemPath(AbsolutePath(Path))), GENERIC_READ,
                                     FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                     nullptr, OPEN_EXISTING, FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
  if (!File.IsOpen())
    return LastErrorText();
  // Read to its end, whatever size is told: the file may grow.
  constexpr std::size_t Part = 1u << 18;
  for (;;) {
    const std::size_t Old = Out.size();
    Out.resize(Old + Part);
    DWORD Count = 0;
    if (!ReadFile(File.Get(), Out.data() + Old, Part, &Count, nullptr)) {
      const DWORD Error = GetLastError();
      Out.clear();
      return ErrorText(Error);
    }
    Out.resize(Old + Count);
    if (Count == 0)
      return {};
  }
}

TDiskError WriteWholeFile(std::u16string_view Path, std::string_view Bytes) {
  if (HoldsZero(Path))
    return ErrorText(ERROR_INVALID_NAME);
  const std::u16string Whole = AbsolutePath(Path);
  const std::u16string Target = SystemPath(Whole);
  const DWORD Attributes = GetFileAttributesW(Wide(Target));
  if (Attributes != INVALID_FILE_ATTRIBUTES &&
      (Attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
    return ErrorText(ERROR_ACCESS_DENIED);
  TTemporaryFile Temporary(Whole.substr(0, Whole.rfind(u'\\') + 1));
  if (!Temporary.IsMade() || !Temporary.Write(Bytes) || !Temporary.RenameTo(Target))
    return LastErrorText();
  return {};
}

TDiskError CheckFolder(std::u16string_view Path) {
  if (Path.empty() || HoldsZero(Path))
    return ErrorText(ERROR_INVALID_NAME);
  const DWORD Attributes = GetFileAttributesW(Wide(SystemPath(AbsolutePath(Path))));
  if (Attributes == INVALID_FILE_ATTRIBUTES)
    return LastErrorText();
  return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? TDiskError() : ErrorText(ERROR_DIRECTORY);
}

std::u16string AbsolutePath(std::u16string_view Path) {
  if (Path.empty() || HoldsZero(Path))
    return std::u16string(Path);
  const std::u16string Ended(Path);
  const std::u16string Full = GrowingText([&](wchar_t *Units, DWORD Count) {
    return GetFullPathNameW(Wide(Ended), Count, Units, nullptr);
  });
  return Full.empty() ? Ended : Full;
}

std::u16string JoinPath(std::u16string_view Folder, std::u16string_view Name) {
  std::u16string Out(Folder);
  if (!Out.empty() && Out.back() != u'\\' && Out.back() != u'/' && Out.back() != u':')
    Out.push_back(u'\\');
  return Out.append(Name);
}

} // namespace hivesweep
