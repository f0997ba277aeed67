#include "repair/Readable.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/Text.h"

namespace hivesweep {

TDiskError WhyUnreadable(TStorage &Storage, std::u16string_view Path) {
  std::string Unused;
  const TDiskError Error = Path.empty() ? TDiskError() : Storage.Read(Path, Unused);
  if (Error.empty())
    return {};
  // The answer does not tell what is not there from what can't be read.
  const std::size_t NameAt = Path.find_last_of(u"\\/") + 1;
  std::vector<TStoredFile> Files;
  const TDiskError FolderError = Storage.List(Path.substr(0, NameAt), Files);
  const bool IsThere = std::ranges::any_of(
      Files, [&](const TStoredFile &File) { return EqualNoCase(File.Name, Path.substr(NameAt)); });
  return IsThere || !FolderError.empty()
             ? std::u16string(Path).append(u": could not be read: ").append(Error)
             : TDiskError();
}

} // namespace hivesweep
