#include "platform/DiskFile.h"

#include "platform/Text.h"
#include "platform/win32/FileParts.h"
#include "platform/win32/LongPath.h"

namespace hivesweep {

TError ReadWholeFile(std::u16string_view Path, std::string &Out, std::size_t Limit) {
  Out.clear();
  if (HoldsZero(Path))
    return SystemError(ERROR_INVALID_NAME);
  const TFileHandle File = OpenToRead(SystemPath(AbsolutePath(Path)), 0);
  return File.IsOpen() && ReadToEnd(File.Get(), Out, Limit) ? TError() : LastError();
}

TError WriteWholeFile(std::u16string_view Path, std::string_view Bytes) {
  if (HoldsZero(Path))
    return SystemError(ERROR_INVALID_NAME);
  const std::u16string Whole = AbsolutePath(Path);
  const std::u16string Target = SystemPath(Whole);
  const DWORD Attributes = GetFileAttributesW(Wide(Target));
  if (Attributes != INVALID_FILE_ATTRIBUTES &&
      (Attributes & (FILE_ATTRIBUTE_READONLY | FILE_ATTRIBUTE_DIRECTORY)) != 0)
    return SystemError(ERROR_ACCESS_DENIED);
  TTemporaryFile Temporary(std::u16string_view(Whole).substr(0, Whole.rfind(u'\\') + 1));
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
