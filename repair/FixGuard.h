#pragma once

#include <string>
#include <string_view>

#include "repair/UndoRecord.h"

namespace hivesweep {

// What may become of something that a fix is about to delete.
enum class TGuardAnswer {
  Delete,
  NotRecorded, // it is not in the record exactly as it is now
  Unlike,      // a restore could not make it again exactly as it is now
};

// Compares what is there now with the record. What the record does not hold exactly, and
// what a restore could not make again from it, must not be deleted.
class TFixGuard {
public:
  TFixGuard(TPlatform &Platform, const TUndoRecord &Record)
      : Platform_(Platform), Record_(Record) {}

  TGuardAnswer OfTree(const TKeyPlace &Place) const;
  // Key is Place, open.
  TGuardAnswer OfValue(TRegKey &Key, const TKeyPlace &Place, std::u16string_view Name) const;
  TGuardAnswer OfFile(const std::u16string &Path) const;

private:
  TGuardAnswer OfSnapshot(const TSnapshot &Now) const;
  TGuardAnswer OfKey(const TKeyPlace &Place, const TSavedKey &Now) const;
  bool CanBeMadeAgain(const TKeyPlace &Place, const TSavedKey &Key) const;
  bool IsRecordedValue(TRegKey &Key, const TKeyPlace &Place, std::u16string_view Name) const;

  TPlatform &Platform_;
  const TUndoRecord &Record_;
};

} // namespace hivesweep
