#pragma once

#include <string>
#include <string_view>

#include "repair/UndoRecord.h"

namespace hivesweep {

// Holds what is there now against the record: what is not in it, exactly as it is,
// must not be deleted.
class TFixGuard {
public:
  TFixGuard(TPlatform &Platform, const TUndoRecord &Record)
      : Platform_(Platform), Record_(Record) {}

  bool MayDeleteTree(const TKeyPlace &Place) const;
  // Key is Place, open.
  bool MayDeleteValue(TRegKey &Key, const TKeyPlace &Place, std::u16string_view Name) const;
  bool MayDeleteFile(const std::u16string &Path) const;

private:
  bool IsRecorded(const TSnapshot &Now) const;
  bool IsRecordedValue(TRegKey &Key, const TKeyPlace &Place, std::u16string_view Name) const;

  TPlatform &Platform_;
  const TUndoRecord &Record_;
};

} // namespace hivesweep
