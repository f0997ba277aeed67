// The folder "undo" beside the backups: the records of fixes and restores.
//
//   backup20090715143005.undo      belongs to the backup "backup20090715143005.reg";
//                                  "backup20090715143005-2.undo" is of the same second
//   backup20090715143005.pending   of a restore that has not come to its end
// The time in a name is for people. What is older and what is newer is told by the running
// numbers of the records: clocks go back.
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
  std::uint64_t Number = 0; // the record's; 0: it has none, or could not be read
};

// What is to be expected of a backup's record.
enum class TUndoState {
  None,       // there is none
  Whole,      // it has the right checksum
  Damaged,    // or of a version that this program does not know
  Unreadable, // the disk did not give it; another time it may
};

class TUndoStore {
public:
  // Both folders end with a separator. TextFolder has the texts of backups, with which the
  // records share their names.
  TUndoStore(TStorage &Storage, std::u16string Folder, std::u16string TextFolder)
      : Storage_(Storage), Folder_(std::move(Folder)), TextFolder_(std::move(TextFolder)) {}

  // All records, by their numbers; before them those without one, by their names. A folder that
  // can't be listed has none, and is told in Error.
  std::vector<TUndoFile> List(TError *Error = nullptr) const;

  // That of one backup. Nothing when it has none, or by Error.
  std::optional<TUndoFile> Of(std::u16string_view BackupName, TError *Error = nullptr) const;

  // The record is complete, on the disk and read back equal when this answers nothing;
  // else it answers why not, naming the folder. BackupName is the name that is wished
  // for; in File it is another one of the same second when a record or a text has that
  // name: none is ever replaced. The record takes the number behind the last one.
  TError Save(TUndoRecord &Record, std::u16string_view BackupName, TUndoFile &File);

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

  // What a backup's record is worth, and what is in its head.
  TUndoState Check(const TUndoFile &File, TUndoHead &Head) const;

  TError Remove(std::u16string_view Name) {
    return Storage_.Remove(Folder_ + std::u16string(Name));
  }

private:
  TError SaveAs(const TUndoRecord &Record, std::u16string_view Name);
  // Writes the record and reads it back.
  using TWrite = TError (TStorage::*)(std::u16string_view Path, std::string_view Bytes);
  TError WriteProved(const TUndoRecord &Record, std::u16string_view Path, TWrite Write);
  // The names of all records and texts, without their extensions.
  TError TakenNames(std::vector<std::u16string> &Stems) const;
  void RemoveHalfWritten();

  TStorage &Storage_;
  const std::u16string Folder_;
  const std::u16string TextFolder_;
};

} // namespace hivesweep
