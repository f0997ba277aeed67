#include "platform/DiskFile.h"

#include "platform/Text.h"
#include "platform/win32/FileParts.h"
#include "platform/win32/LongPath.h"

namespace hivesweep {

namespace {

TFileHandle OpenToWrite(const std::u16string &SystemPath, DWORD Disposition) {
  return TFileHandle(CreateFileW(Wide(SystemPath), GENERIC_WRITE,
                                 FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                 Disposition, FILE_ATTRIBUTE_NORMAL, nullptr));
}

// The path of an open file behind all links. Empty on systems before Vista, which know no
// links to files.
std::u16string EndOfLinks(HANDLE File) {
  using TGetFinalPath = DWORD(WINAPI *)(HANDLE, LPWSTR, DWORD, DWORD);
  static const auto GetFinalPath =
      reinterpret_cast<TGetFinalPath>(FindFunction(L"kernel32.dll", "GetFinalPathNameByHandleW"));
  if (!GetFinalPath)
    return {};
  return GrowingText(
      [&](wchar_t *Units, DWORD Count) { return GetFinalPath(File, Units, Count, 0); });
}

} // namespace

TError ReadWholeFile(std::u16string_view Path, std::string &Out, std::size_t Limit) {
  Out.clear();
  if (HoldsZero(Path))
    return SystemError(ERROR_INVALID_NAME);
  const TFileHandle File = OpenToRead(SystemPath(AbsolutePath(Path)), 0);
  if (!File.IsOpen())
    return LastError();
  const std::optional<std::uint64_t> Size = RegularSize(File.Get());
  if (!Size)
    return NoRegularFile();
  if (*Size > Limit)
    return FileTooLarge(Limit);
  if (ReadToEnd(File.Get(), Out, Limit))
    return {};
  return GetLastError() == ERROR_FILE_TOO_LARGE ? FileTooLarge(Limit) : LastError();
}

TError WriteWholeFile(std::u16string_view Path, std::string_view Bytes) {
  if (HoldsZero(Path))
    return SystemError(ERROR_INVALID_NAME);
  std::u16string Target = SystemPath(AbsolutePath(Path));
  // A pipe would take the question for its client.
  const bool IsDevice = Target.starts_with(u"\\\\.\\");
  const DWORD Found = IsDevice ? INVALID_FILE_ATTRIBUTES : GetFileAttributesW(Wide(Target));
  const DWORD Attributes = Found == INVALID_FILE_ATTRIBUTES ? 0 : Found;
  if ((Attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
    return SystemError(ERROR_ACCESS_DENIED);
  const bool IsLink = (Attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
  if (TFileHandle There = OpenToWrite(Target, OPEN_EXISTING); There.IsOpen()) {
    if (!RegularSize(There.Get()))
      return WriteAll(There.Get(), Bytes) ? TError() : LastError();
    if (std::u16string End = IsLink ? EndOfLinks(There.Get()) : u""; !End.empty())
      Target = std::move(End);
  } else if (IsLink) {
    if (GetLastError() != ERROR_FILE_NOT_FOUND)
      return LastError();
    // It leads to no file yet, so there is nothing that could be lost.
    const TFileHandle New = OpenToWrite(Target, CREATE_ALWAYS);
    return New.IsOpen() && WriteAndFlush(New.Get(), Bytes) ? TError() : LastError();
  }
  TTemporaryFile Temporary(std::u16string_view(Target).substr(0, Target.rfind(u'\\') + 1));
  if (!Temporary.IsMade() || !WriteAndFlush(Temporary.Get(), Bytes) || !Temporary.RenameTo(Target))
    return LastError();
  return {};
}

TError CheckFolder(std::u16string_view Path) {
  if (Path.empty() || HoldsZero(Path))
    return SystemError(ERROR_INVALID_NAME);
  const DWORD Attributes = GetFileAttributesW(Wide(SystemPath(AbsolutePath(Path))));
  if (Attributes == INVALID_FILE_ATTRIBUTES)
    return LastError();
  return (Attributes & FILE_ATTRIBUTE_DIRECTORY) != 0 ? TError() : SystemError(ERROR_DIRECTORY);
}

std::u16string PathFromBytes(std::string_view Bytes) { return FromUtf8(Bytes); }

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
