// The folder "undo" beside the backups: the records of fixes and restores.
//
//   backup20090715143005.undo      belongs to the backup "backup20090715143005.reg";
//                                  "backup20090715143005-2.undo" is of the same second
//   backup20090715143005.pending   of a restore that has not come to its end
//   *.new                          half written; never read, removed by the next save
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "platform/Storage.h"
#include "repair/UndoRecord.h"

namespace hivesweep {

struct TUndoFile {
  std::u16string Name;
  std::u16string BackupName; // what it is restored by: "backup20090715143005.reg"
  std::uint64_t Size = 0;
  TLocalTime Time;
  bool IsPending = false;
};

class TUndoStore {
public:
  // Folder ends with a separator.
  TUndoStore(TStorage &Storage, std::u16string Folder)
      : Storage_(Storage), Folder_(std::move(Folder)) {}

  // All records, oldest first. A folder that can't be listed has none, and is told in
  // Error.
  std::vector<TUndoFile> List(TError *Error = nullptr) const;

  // That of one backup. Nothing when it has none, or by Error.
  std::optional<TUndoFile> Of(std::u16string_view BackupName, TError *Error = nullptr) const;

  // The record is complete, on the disk and read back equal when this answers no
  // error. BackupName is the name that is wished
  // for; in File it is another one of the same second when there is a record of that
  // name: none is ever replaced.
  TError Save(const TUndoRecord &Record, std::u16string_view BackupName, TUndoFile &File);

  // Saves the record once more in the place that Save gave it.
  TError Replace(const TUndoRecord &Record, const TUndoFile &File) {
    return SaveAs(Record, File.Name);
  }

  // Ends a pending record: Record, which is saved in its place first, becomes one of
  // those that can be undone, by the name that it has.
  TError Finish(const TUndoRecord &Record, const TUndoFile &File);

  // Nothing when it can't be used; Why then says so. RecordUnreadable: the disk did not
  // give it; another time it may. Else it is damaged, or of another view of the registry.
  std::optional<TUndoRecord> Load(std::u16string_view Name, TError &Why) const;

  TError Remove(std::u16string_view Name) {
    return Storage_.Remove(Folder_ + std::u16string(Name));
  }

private:
  TError SaveAs(const TUndoRecord &Record, std::u16string_view Name);
  void RemoveHalfWritten();

  TStorage &Storage_;
  const std::u16string Folder_;
};

} // namespace hivesweep
