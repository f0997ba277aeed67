// One restore of a backup: first everything that it can touch is recorded, then the
// registry editor imports the backup's text, then what the exact records hold is put
// back over that.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/Platform.h"
#include "repair/BackupList.h"
#include "repair/EditorText.h"
#include "repair/UndoStore.h"

namespace hivesweep {

struct TRestoreReport {
  TError Failure;              // why it was not
  std::vector<TError> Notes;   // what went otherwise than it should
  std::vector<TError> Remarks; // what was done besides; nothing is missing for it
  // Where the registry or a file is not what it should be, one by one.
  std::vector<TPutFailure> NotRestored;
  std::u16string UndoName; // the backup that undoes this restore; empty: nothing changed
};

class TRestore {
public:
  // Everything given must outlive the restore, which is used up by one run.
  TRestore(TPlatform &Platform, TUndoStore &Undo, TBackupEntry Backup)
      : Platform_(Platform), Undo_(Undo), Backup_(std::move(Backup)) {}

  // Puts an unfinished restore right, records what is there, and starts the editor, if
  // every key that the text can change is recorded. It does not wait. False when that
  // failed: nothing has been changed, and the report says why.
  bool Begin();

  // Waits so long at most, 0 only asks. True when the editor has ended.
  bool WaitForEditor(std::uint32_t Milliseconds);

  // The rest, once the editor has ended. What can't be put back does not keep the rest
  // from being put back.
  void Finish();

  const std::u16string &BackupName() const { return Backup_.Name; }
  const TRestoreReport &Report() const { return Report_; }

private:
  bool PutInterruptedRight();
  bool PutRight(const TUndoFile &File, TUndoRecord Record);
  bool LoadRecord();
  TError LoadText();
  TError WhyTextUnrecorded() const;
  TSnapshot WithText(TSnapshot Present) const;
  TSnapshot WithoutImport(TSnapshot Present) const;
  TSnapshot WithoutMismade(TSnapshot Present, const TSnapshot &Wanted) const;
  std::set<TKeyPlace, TKeyPlaceLess> EditorsKeys(const TSnapshot &Present) const;
  bool BeginRecord(const TSnapshot &Wanted, std::u16string_view BackupName);
  TSnapshot PutRecordBack(TSnapshot &After);
  void NoteMissingText(const TSnapshot &After);
  std::u16string EndRecord(TSnapshot After, const TSnapshot &Wanted);
  bool EndInterrupted(TErrorCode How, const TUndoFile &File, TUndoRecord Record,
                      const TSnapshot &After);
  void StartEditor();
  bool Fail(TError Why); // always false
  void Note(TError What) { Report_.Notes.push_back(std::move(What)); }
  void Remark(TError What) { Report_.Remarks.push_back(std::move(What)); }

  TPlatform &Platform_;
  TUndoStore &Undo_;
  const TBackupEntry Backup_;
  TRestoreReport Report_;
  std::optional<TUndoRecord> Record_; // the backup's
  TEditorText Text_;                  // the backup's text; empty when it is not imported
  TUndoRecord Own_;                   // of this restore
  TUndoFile OwnFile_;
  std::unique_ptr<TProcess> Editor_;
};

} // namespace hivesweep
