#include "repair/Readable.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/Text.h"

namespace hivesweep {

TError WhyUnreadable(TStorage &Storage, std::u16string_view Path) {
  std::string Unused;
  TError Error = Path.empty() ? TError() : Storage.Read(Path, Unused);
  if (!Error)
    return {};
  // The answer does not tell what is not there from what can't be read.
  const std::size_t NameAt = Path.find_last_of(u"\\/") + 1;
  std::vector<TStoredFile> Files;
  const TError FolderError = Storage.List(Path.substr(0, NameAt), Files);
  const bool IsThere = std::ranges::any_of(
      Files, [&](const TStoredFile &File) { return EqualNoCase(File.Name, Path.substr(NameAt)); });
  return IsThere || FolderError ? Because(std::move(Error), TErrorCode::Unreadable, Path)
                                : TError();
}

} // namespace hivesweep
