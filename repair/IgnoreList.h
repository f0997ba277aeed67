// The keys whose problems the user does not want to see, in the file that the scan's
// filter reads.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "engine/IgnoreFile.h"
#include "platform/Platform.h"
#include "repair/ListRows.h"

namespace hivesweep {

class TIgnoreList {
public:
  TIgnoreList(TPlatform &Platform, std::u16string Path);

  // One key is there once: a second value of it takes the place of the first. Both
  // will be found again as they are, or it fails, and the file is what it was before.
  TError Add(std::u16string_view KeyPath, std::u16string_view ValueName);

  // Removing what is not there is fine.
  TError Remove(std::u16string_view KeyPath);

  // The file names exactly this key, letter case included.
  bool Contains(std::u16string_view KeyPath) { return File_.Contains(KeyPath); }

  // Why the last Contains could not read the file; empty when it could.
  const TError &Failure() const { return File_.Failure(); }

  // One row for each key: its path, and the name of the value.
  void Fill(TListRows &Rows) const;

private:
  bool HoldsAll(const TIniSection &Wanted, std::u16string_view LeftOut) const;

  TPlatform &Platform_;
  const std::u16string Path_;
  TIgnoreFile File_;
};

} // namespace hivesweep
