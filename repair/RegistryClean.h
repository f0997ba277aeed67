// Fixes problems, keeps backups and undoes fixes, and keeps the program's settings: all
// that the window and the command line do besides scanning.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ScanRegistry.h"
#include "engine/ScanView.h"
#include "platform/Platform.h"
#include "repair/AppFrame.h"
#include "repair/BackupList.h"
#include "repair/DataLock.h"
#include "repair/FixSteps.h"
#include "repair/IgnoreList.h"
#include "repair/ListRows.h"
#include "repair/Restore.h"
#include "repair/Settings.h"
#include "repair/UndoStore.h"

namespace hivesweep {

// The rows of check boxes that show the areas, in the areas' order.
class TAreaList {
public:
  TAreaList() = default;
  TAreaList(const TAreaList &) = delete;
  TAreaList &operator=(const TAreaList &) = delete;
  virtual ~TAreaList() = default;

  virtual bool IsChecked(int Row) const = 0;
  virtual void SetChecked(int Row, bool Checked) = 0;
};

// What became of one problem that was to be fixed.
enum class TRemoval {
  Removed,
  GoneAlready,
  Denied,
  Failed,
  // It could not be read when it was to be recorded, or was changed after that: it was
  // left alone.
  NotRecorded,
  // A restore could not make it again exactly as it is: it was left alone.
  NotRemakable,
  // It has come onto the ignore list since the scan: it was left alone.
  Ignored,
  // The ignore list could not be read when it was to be asked: it was left alone.
  ListUnread,
  // Its key could not be opened, and the value of its name was removed from the key that
  // was open.
  FromOtherKey,
};

struct TNotRemoved {
  std::u16string TypeName;
  std::u16string KeyPath;
  std::u16string ValueName;
  std::u16string Data;
  TRemoval Why = TRemoval::Failed;
  std::u16string OtherKey; // of a FromOtherKey: where the value was
};

struct TFixReport {
  TError Failure; // why nothing was done at all: NoBackupWritten, IgnoreListUnknown, NothingFixed
  std::int32_t Removed = 0;
  std::vector<TNotRemoved> NotRemoved;
  std::u16string BackupName; // what to restore to undo the fix; empty: nothing to undo
  TError BackupFailure;      // why the backup's text is missing; the record is there
  bool LastFixWritten = true;
};

class TRegistryClean {
public:
  // Creates the data folders that are missing; that one can't be created shows when
  // something is written into it.
  explicit TRegistryClean(TPlatform &Platform);

  // With the data in other folders, which are created when something is written there.
  TRegistryClean(TPlatform &Platform, TDataPaths Paths);

  // A restore that was begun comes to its end first.
  ~TRegistryClean() { FinishRestore(); }

  // ---- fixing -----------------------------------------------------------------------
  // Removes the checked problems and keeps a backup. Before anything is removed, the
  // exact state of all of it is on the disk; when that can't be done, or when the ignore list
  // is there and can't be read, nothing is removed, and the report says why. So it is while
  // another program fixes, restores or deletes; for that one it waits a moment.
  TFixReport BackupAndFix(TListViewManage &Problems, TScanRegistry &Engine,
                          TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                          std::u16string_view StatusText);

  // Leaves a fix before its next problem. Nothing is kept of one that is left while it is
  // being recorded.
  void StopFix() { FixStopped_ = true; }

  bool RecordLastFix = true;    // the time of the fix goes into the settings
  bool IncludeBackup = true;    // the scan's backup lines are kept
  bool FixDeepScan = true;      // problems of the deep scan are fixed as well
  std::uint32_t FixPause = 10;  // milliseconds before each problem, for the bar's pace
  std::u16string FixStatusText; // what the label shows meanwhile

  // ---- backups ----------------------------------------------------------------------
  // In Error is why they may not be all.
  std::vector<TBackupEntry> EnumerateBackups(TError *Error = nullptr) const;
  void FillBackups(TListRows &Rows) const;

  // Begins to restore the backup of that name and does not wait for the editor. False,
  // and nothing has been changed, when there is none of that name, or by RestoreReport.
  bool RestoreBackup(std::u16string_view Name);

  // To be called now and then after RestoreBackup; waits for the editor so long at most.
  // True when no restore is under way any more.
  bool ContinueRestore(std::uint32_t Milliseconds = 0);
  void FinishRestore();
  const TRestoreReport &RestoreReport() const { return RestoreReport_; } // of the last one

  // The restores that were broken off and will be put right by the next one, each with
  // RestoreInterrupted. Not one that is under way here.
  std::vector<TError> InterruptedRestores() const;

  // Deletes the backup of that name with its records. It waits a moment for another
  // program, and handles messages meanwhile.
  TError DeleteBackup(std::u16string_view Name);

  // ---- the ignore list ------------------------------------------------------------------
  TIgnoreList IgnoreList;

  // ---- settings -------------------------------------------------------------------------
  void LoadAreaSwitches(TAreaList &List) const;
  bool SaveAreaSwitches(const TAreaList &List);

  // When the last scan and the last fix were, and how many problems have been fixed
  // in all. NoneText stands for a date that there is not.
  void LoadSummary(TStatusLabel &LastScan, TStatusLabel &LastClean, TStatusLabel &Total,
                   std::u16string_view NoneText) const;

  // After a scan or, with the number of problems fixed, after a fix. False when it could
  // not be written, or when the total is no number to add to.
  bool RecordStatistics(std::int32_t Count, bool IsScan) {
    return Settings_.RecordStatistics(Count, IsScan);
  }

  const TAppFrame Frame;
  const TDataPaths Paths;

private:
  struct TFixRun;

  void CreateFolders();
  void FixSelected(TFixRun &Run, std::vector<std::u16string> &BackupLines,
                   std::u16string_view StatusText);
  void RemoveCheckedProblems(TFixRun &Run, std::vector<std::u16string> &BackupLines);
  TRemoval Remove(TFixRun &Run, const TItemInfo &Item);
  bool TakeData(TFixRun &Run);
  bool MayBegin(TFixRun &Run) const;
  bool RecordBeforeFix(TFixRun &Run);
  TError PrepareText(TFixRun &Run) const;
  std::u16string PreparedPath(const TFixRun &Run) const;
  void RemovePreparedTexts() const;
  void Forget(TFixRun &Run);
  void RecordWhatWasFixed(TFixRun &Run);
  void WriteBackup(TFixRun &Run);
  void PruneBackups(const TFixRun &Run);
  TError DeleteHeldBackup(std::u16string_view Name); // under the lock

  TPlatform &Platform_;
  TSettings Settings_;
  TUndoStore Undo_;
  TDataLock Lock_; // held by a fix, a restore, a deletion
  bool FixStopped_ = false;
  std::unique_ptr<TRestore> Restore_;
  TRestoreReport RestoreReport_;
};

} // namespace hivesweep
