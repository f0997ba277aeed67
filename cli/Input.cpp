#include "cli/Input.h"

#include <algorithm>
#include <vector>

#include "cli/Failure.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"

namespace hivesweep {

std::string ReadInput(const std::string &Name) {
  std::string Bytes;
  if (const TDiskError Error = ReadWholeFile(FromUtf8(Name), Bytes); !Error.empty())
    throw TFailure(TExitCode::Failed, Name + ": could not be read: " + ToUtf8(Error));
  return Bytes;
}

void RequireReadable(TSession &Session, std::u16string_view Path) {
  if (Path.empty())
    return;
  TStorage &Storage = *Session.Platform.Storage;
  std::string Unused;
  const TDiskError Error = Storage.Read(Path, Unused);
  if (Error.empty())
    return;
  // The answer does not tell what is not there from what can't be read.
  const std::size_t NameAt = Path.find_last_of(u"\\/") + 1;
  std::vector<TStoredFile> Files;
  const TDiskError FolderError = Storage.List(Path.substr(0, NameAt), Files);
  const bool IsThere = std::ranges::any_of(
      Files, [&](const TStoredFile &File) { return EqualNoCase(File.Name, Path.substr(NameAt)); });
  if (IsThere || !FolderError.empty())
    throw TFailure(TExitCode::Failed, ToUtf8(Path) + ": could not be read: " + ToUtf8(Error));
}

} // namespace hivesweep
