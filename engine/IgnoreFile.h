// The user's list of keys whose problems are never listed: the names in the section
// "Registry" of an INI file.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

#include "platform/Profiles.h"

namespace hivesweep {

class TIgnoreFile {
public:
  // An empty path is a file that is not there.
  TIgnoreFile(TProfiles &Profiles, std::u16string Path)
      : Profiles_(Profiles), Path_(std::move(Path)) {}

  // The file names exactly this key, letter case included. The answer is that of
  // the file as it stands at this moment; as long as its stamp tells that nothing
  // has changed, it is not read again. When it can't be read, the answer is that of the
  // file as it was last read, and Failure says why.
  bool Contains(std::u16string_view KeyPath);

  // Why the last call of Contains could not read the file; empty when it could.
  const TError &Failure() const { return Failure_; }

private:
  TProfiles &Profiles_;
  const std::u16string Path_;
  std::optional<TFileStamp> Stamp_;
  std::unordered_set<std::u16string> Keys_;
  TError Failure_;
};

} // namespace hivesweep
