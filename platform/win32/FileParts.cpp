#include "platform/win32/FileParts.h"

#include <algorithm>

#include "platform/Text.h"
#include "platform/win32/LongPath.h"

namespace hivesweep {

std::u16string SystemErrorText(std::uint32_t Number) {
  wchar_t Text[512] = {};
  const DWORD Length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, Number, 0,
                     Text, static_cast<DWORD>(std::size(Text)), nullptr);
  std::u16string_view Words = Trim({FromWide(Text), Length});
  // The caller's sentence goes on behind it.
  if (Words.ends_with(u'.'))
    Words.remove_suffix(1);
  return Words.empty() ? u"error " + ToDecimal(Number) : std::u16string(Words);
}

TError LastError() { return SystemError(GetLastError()); }

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

bool IsReadOnly(const std::u16string &SystemPath) {
  const DWORD Attributes = GetFileAttributesW(Wide(SystemPath));
  constexpr DWORD Asked = FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY;
  return Attributes != INVALID_FILE_ATTRIBUTES && (Attributes & Asked) == FILE_ATTRIBUTE_READONLY;
}

TFileHandle OpenToRead(const std::u16string &SystemPath, DWORD Flags) {
  return TFileHandle(CreateFileW(Wide(SystemPath), GENERIC_READ,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 OPEN_EXISTING, Flags | FILE_FLAG_SEQUENTIAL_SCAN, nullptr));
}

bool ReadToEnd(HANDLE File, std::string &Out, std::size_t Limit) {
  Out.clear();
  // Read to its end, whatever size is told: the file may grow.
  constexpr std::size_t Part = 1u << 18;
  for (;;) {
    const std::size_t Old = Out.size();
    Out.resize(Old + Part);
    DWORD Count = 0;
    const bool Read = ReadFile(File, Out.data() + Old, Part, &Count, nullptr) != 0;
    Out.resize(Read ? Old + Count : 0);
    if (Out.size() > Limit) {
      Out.clear();
      SetLastError(ERROR_FILE_TOO_LARGE);
      return false;
    }
    if (!Read || Count == 0)
      return Read;
  }
}

std::optional<std::uint64_t> RegularSize(HANDLE File) {
  DWORD High = 0;
  SetLastError(NO_ERROR);
  const DWORD Low = GetFileSize(File, &High);
  const bool HasSize = Low != INVALID_FILE_SIZE || GetLastError() == NO_ERROR;
  if (GetFileType(File) != FILE_TYPE_DISK || !HasSize)
    return std::nullopt;
  return static_cast<std::uint64_t>(High) << 32 | Low;
}

bool WriteAll(HANDLE File, std::string_view Bytes) {
  while (!Bytes.empty()) {
    const auto Part = static_cast<DWORD>(std::min<std::size_t>(Bytes.size(), 1u << 20));
    DWORD Written = 0;
    if (!WriteFile(File, Bytes.data(), Part, &Written, nullptr))
      return false;
    Bytes.remove_prefix(Written);
  }
  return true;
}

bool WriteAndFlush(HANDLE File, std::string_view Bytes) {
  return WriteAll(File, Bytes) && FlushFileBuffers(File) != 0;
}

bool RenameOver(const std::u16string &SystemFrom, const std::u16string &SystemTo) {
  return MoveFileExW(Wide(SystemFrom), Wide(SystemTo),
                     MOVEFILE_REPLACE_EXISTING | MOVEFILE_WRITE_THROUGH) != 0;
}

TTemporaryFile::TTemporaryFile(std::u16string_view Folder) {
  constexpr DWORD Tries = 1000;
  for (DWORD Try = 0; Try < Tries && !IsMade_; ++Try) {
    Path_ = SystemPath(std::u16string(Folder) + u"~" + ToDecimal(GetCurrentProcessId()) + u"-" +
                       ToDecimal(GetTickCount() + Try) + u".tmp");
    Handle_ = TFileHandle(CreateFileW(Wide(Path_), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                      FILE_ATTRIBUTE_NORMAL, nullptr));
    IsMade_ = Handle_.IsOpen();
    if (!IsMade_ && GetLastError() != ERROR_FILE_EXISTS)
      break;
  }
}

TTemporaryFile::~TTemporaryFile() {
  Handle_.Close();
  if (!IsMade_)
    return;
  SetFileAttributesW(Wide(Path_), FILE_ATTRIBUTE_NORMAL); // or it may not be deleted
  DeleteFileW(Wide(Path_));
}

bool TTemporaryFile::SetAttributes(DWORD Attributes) {
  Handle_.Close();
  return SetFileAttributesW(Wide(Path_), Attributes) != 0;
}

bool TTemporaryFile::RenameTo(const std::u16string &SystemTarget) {
  Handle_.Close();
  IsMade_ = !RenameOver(Path_, SystemTarget);
  return !IsMade_;
}

} // namespace hivesweep
