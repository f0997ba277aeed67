// The backups that a user can restore or delete.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Storage.h"
#include "repair/ListRows.h"
#include "repair/UndoStore.h"

namespace hivesweep {

struct TBackupEntry {
  std::u16string Name; // "backup20090715143005.reg": what tells one from another
  std::u16string Path;
  std::int32_t Changes = 0; // problems that were fixed; of a text without a record, its keys
  std::int64_t Size = 0;    // bytes
  TLocalTime Time;
  // A backup text is there. Without one it is the record alone: of a fix that was
  // broken off or that had no text to keep, or of a restore.
  bool HasText = true;
  TUndoState Record = TUndoState::None;
  std::uint64_t Number = 0; // the record's; 0: it has none
};

// The entries of the folder's backup files in the disk's order, then those of records
// without one, the oldest first. A folder that can't be listed has none, and is named in
// Error.
std::vector<TBackupEntry> ListBackups(TStorage &Storage, const TUndoStore &Undo,
                                      std::u16string_view Folder, TError *Error = nullptr);

// One row for each: time, changes, size, name. A size of 1000 bytes has no cell, and
// one above 1,000,000 has two, so the name stands in another column then; whoever
// takes it from the third cell of such a row names no backup.
void FillRows(std::span<const TBackupEntry> Backups, TListRows &Rows);

// The files to delete so that two of them remain. Which two depends on the order of the
// list: a later file takes the place of the first one before that of the second, even
// when the first was the later of both. Later is the one whose record has the greater
// number, and only among those without a number the one with the later time. Fewer than
// three are all kept.
std::vector<TBackupEntry> SurplusOf(std::span<const TBackupEntry> Backups);

} // namespace hivesweep
