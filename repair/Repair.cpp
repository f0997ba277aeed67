// The fix: from the checked problems to their removal, with its backup.
#include <algorithm>
#include <functional>

#include "platform/Text.h"
#include "repair/BackupText.h"
#include "repair/FileStatus.h"
#include "repair/FixGuard.h"
#include "repair/Readable.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

namespace {

// A backup's text is written beside its place before the fix begins, so that a full
// disk is known while everything can still be left alone, and gets its name after it. The
// name with this extension is none by which a backup is known.
constexpr std::u16string_view PreparedExtension = u".tmp";

TRemoval RemovalOf(TGuardAnswer Answer) {
  return Answer == TGuardAnswer::Unlike ? TRemoval::NotRemakable : TRemoval::NotRecorded;
}

TRemoval RemovalOf(TRegStatus Status) {
  switch (Status) {
  case TRegStatus::Ok:
    return TRemoval::Removed;
  case TRegStatus::NotFound:
    return TRemoval::GoneAlready;
  case TRegStatus::Denied:
    return TRemoval::Denied;
  case TRegStatus::Failed:
    break;
  }
  return TRemoval::Failed;
}

// A record that was made without its type tells it by its caption.
bool IsOfDeepScan(const TItemInfo &Item, const TScanRegistry &Engine) {
  return Item.Type ? *Item.Type == TProblemType::DeepScan
                   : Item.TypeName == Engine.Caption(TProblemType::DeepScan);
}

} // namespace

struct TRegistryClean::TFixRun {
  TListViewManage &Problems;
  TScanRegistry &Engine;
  TStatusLabel &StatusLabel;
  TProgressBar &ProgressBar;
  TUndoRecord Record;
  TUndoFile File; // the record's
  TRegistry Registry;
  TFixCursor Cursor;
  TFixReport Report;
};

TFixReport TRegistryClean::BackupAndFix(TListViewManage &Problems, TScanRegistry &Engine,
                                        TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                                        std::u16string_view StatusText) {
  FinishRestore();
  FixStopped_ = false;
  TFixRun Run{Problems,
              Engine,
              StatusLabel,
              ProgressBar,
              {},
              {},
              TRegistry(*Platform_.Registry, TRegAccess::Full),
              {},
              {}};
  const TDataLockGuard Guard(Lock_);
  if (!TakeData(Run) || !MayBegin(Run) || !RecordBeforeFix(Run))
    return std::move(Run.Report);
  if (FixStopped_) { // while it was being recorded
    Forget(Run);
    return std::move(Run.Report);
  }
  std::vector<std::u16string> BackupLines;
  FixSelected(Run, BackupLines, StatusText);
  RecordWhatWasFixed(Run);
  if (!BackupLines.empty())
    WriteBackup(Run);
  return std::move(Run.Report);
}

bool TRegistryClean::TakeData(TFixRun &Run) {
  TError Error = Lock_.Take([this] { return FixStopped_; });
  const bool IsInUse = Error.Code == TErrorCode::DataInUse || Error.Code == TErrorCode::DataInUseBy;
  Run.Report.Failure =
      Because(std::move(Error), IsInUse ? TErrorCode::NothingFixed : TErrorCode::NoBackupWritten);
  return !Run.Report.Failure;
}

// The user's own word on what must stay has to be known, also where the list of problems
// was made without it.
bool TRegistryClean::MayBegin(TFixRun &Run) const {
  Run.Report.Failure = Because(WhyUnreadable(*Platform_.Storage, Paths.IgnoreIniPath),
                               TErrorCode::IgnoreListUnknown);
  return !Run.Report.Failure;
}

// True when everything that is going to be removed is on the disk.
bool TRegistryClean::RecordBeforeFix(TFixRun &Run) {
  const std::vector<std::u16string> &Lines = Run.Engine.BackupText;
  if (Lines.empty() && Run.Problems.CheckedCount() == 0)
    return true;
  // Every problem is looked at twice, before it is read and after that.
  Run.ProgressBar.SetPosition(0);
  Run.ProgressBar.SetMax(std::max(3 * Run.Problems.CheckedCount(), 1));
  const auto GoesOn = [&] {
    Platform_.Messages->Pump();
    if (Run.ProgressBar.Position() < Run.ProgressBar.Max())
      Run.ProgressBar.Advance();
    return !FixStopped_;
  };
  Run.Record =
      RecordFix(Platform_, Run.Problems, Run.Engine.Caption(TProblemType::ShortcutFile), GoesOn);
  if (FixStopped_)
    return true; // nothing has been kept yet
  TError Error = Undo_.Save(Run.Record, BackupNameOf(Platform_.Clock->Now()), Run.File);
  if (!Error) {
    Run.Report.BackupName = Run.File.BackupName;
    Error = PrepareText(Run);
    if (!Error)
      return true;
    Forget(Run);
  }
  Run.Report.Failure = Because(std::move(Error), TErrorCode::NoBackupWritten);
  return false;
}

TError TRegistryClean::PrepareText(TFixRun &Run) const {
  const std::u16string &Folder = Paths.BackupFolderPath;
  TError Error = Platform_.Storage->CreateFolder(Folder);
  if (!Error && !Run.Engine.BackupText.empty()) {
    RemovePreparedTexts();
    Error = Platform_.Storage->WriteNew(PreparedPath(Run), EncodeBackup(Run.Engine.BackupText));
  }
  return About(Folder, std::move(Error));
}

std::u16string TRegistryClean::PreparedPath(const TFixRun &Run) const {
  const std::u16string &Name = Run.Report.BackupName;
  return Paths.BackupFolderPath + Name.substr(0, Name.rfind(u'.')) +
         std::u16string(PreparedExtension);
}

// Those of fixes that were broken off: whoever holds the lock is the only one that fixes.
void TRegistryClean::RemovePreparedTexts() const {
  std::vector<TStoredFile> Found;
  Platform_.Storage->List(Paths.BackupFolderPath, Found);
  for (const TStoredFile &File : Found)
    if (!File.IsFolder && File.Name.starts_with(u"backup") &&
        File.Name.ends_with(PreparedExtension))
      Platform_.Storage->Remove(Paths.BackupFolderPath + File.Name);
}

void TRegistryClean::Forget(TFixRun &Run) {
  if (Run.Report.BackupName.empty())
    return;
  Platform_.Storage->Remove(PreparedPath(Run));
  Undo_.Remove(Run.File.Name);
  Run.Report.BackupName.clear();
}

// What the fix has left alone is none of its undo's business, and the list of backups tells
// how many problems were fixed. When this can't be written the record stays as it is: then
// an undo also brings back what others have changed of what stayed.
void TRegistryClean::RecordWhatWasFixed(TFixRun &Run) {
  const bool AllGone = !FixStopped_ && Run.Report.NotRemoved.empty();
  if (Run.Report.BackupName.empty() || AllGone)
    return;
  Run.Record.Changes = static_cast<std::uint32_t>(Run.Report.Removed);
  Run.Record.Marks =
      MarksOfGone(Run.Record.Marks, TakeSnapshot(Platform_, Run.Record.Before.Scope));
  Undo_.Replace(Run.Record, Run.File);
}

void TRegistryClean::FixSelected(TFixRun &Run, std::vector<std::u16string> &BackupLines,
                                 std::u16string_view StatusText) {
  Run.Engine.MakeBackupFolders();
  FixStatusText = StatusText;
  IncludeBackup = true;
  FixDeepScan = true;
  RemoveCheckedProblems(Run, BackupLines);
}

void TRegistryClean::RemoveCheckedProblems(TFixRun &Run, std::vector<std::u16string> &BackupLines) {
  const std::int64_t Total = Run.Problems.TotalCount();
  Run.ProgressBar.SetPosition(0);
  Run.ProgressBar.SetMin(0);
  Run.ProgressBar.SetMax(static_cast<std::int32_t>(Total));
  if (RecordLastFix)
    Run.Report.LastFixWritten = Settings_.WriteLastFix();
  Run.StatusLabel.SetText(u"");
  Run.StatusLabel.SetText(FixStatusText);
  if (IncludeBackup)
    BackupLines.insert(BackupLines.end(), Run.Engine.BackupText.begin(),
                       Run.Engine.BackupText.end());

  std::int64_t Done = 0;
  for (std::int32_t Index = 0; Index < Run.Problems.GroupCount() && !FixStopped_; ++Index) {
    for (std::int32_t Row = Run.Problems.GetGroup(Index)->Count() - 1; Row >= 0; --Row) {
      Platform_.Messages->Pump();
      if (FixStopped_)
        break;
      if (Total != 1)
        Run.ProgressBar.SetPosition(static_cast<std::int32_t>(Done * Total / (Total - 1)));
      if (FixPause != 0)
        Platform_.Clock->Pause(FixPause);
      TGroupItems *const Group = Run.Problems.GetGroup(Index);
      const TItemInfo *const Item = Group ? Group->Get(Row) : nullptr;
      if (!Item)
        continue; // a handler of those messages has removed it
      if (Item->Checked) {
        if (!FixDeepScan && IsOfDeepScan(*Item, Run.Engine))
          continue; // not counted: the bar stays where it is
        if (const TRemoval What = Remove(Run, *Item); What == TRemoval::Removed)
          ++Run.Report.Removed;
        else
          Run.Report.NotRemoved.push_back(
              {Item->TypeName, Item->KeyPath, Item->ValueName, Item->Data, What,
               What == TRemoval::FromOtherKey ? PathOf(*Run.Cursor.OpenKey()) : u""});
        Group->Delete(Item);
      }
      ++Done;
    }
  }
  Run.Registry.CloseKey();
  Run.ProgressBar.SetMax(100);
  Run.ProgressBar.SetPosition(100);
}

TRemoval TRegistryClean::Remove(TFixRun &Run, const TItemInfo &Item) {
  const bool IsIgnored = IgnoreList.Contains(Item.KeyPath);
  if (IgnoreList.Failure())
    return TRemoval::ListUnread;
  if (IsIgnored)
    return TRemoval::Ignored;
  const TFixGuard Guard(Platform_, Run.Record);
  const std::optional<TFixStep> Known =
      StepOf(Item, Run.Engine.Caption(TProblemType::ShortcutFile));
  if (!Known)
    return TRemoval::NotRecorded;
  const TFixStep &Step = *Known;
  if (Step.Action == TFixAction::RemoveFile) {
    if (const TGuardAnswer Answer = Guard.OfFile(Item.Data); Answer != TGuardAnswer::Delete)
      return RemovalOf(Answer);
    return RemovalOf(RegStatusOf(Platform_.Files->RemoveFile(Item.Data)));
  }
  if (Step.Root)
    Run.Registry.SetRoot(*Step.Root);
  TKeyPlace Place = Run.Cursor.Aim(Step);
  if (Step.Action == TFixAction::RemoveKey) {
    if (const TGuardAnswer Answer = Guard.OfTree(Place); Answer != TGuardAnswer::Delete)
      return RemovalOf(Answer);
    return RemovalOf(Run.Registry.DeleteKey(Step.Path));
  }

  // A key that can't be opened leaves the one before it open, and the value of this
  // name is deleted there. It has always been so, and is recorded as such.
  const TRegStatus Opened = Run.Registry.OpenKey(Step.Path);
  if (Opened == TRegStatus::Ok)
    Run.Cursor.Opened(std::move(Place));
  TRegKey *const Key = Run.Registry.CurrentKey();
  if (!Key || !Run.Cursor.OpenKey())
    return RemovalOf(Opened);
  const TGuardAnswer Answer = Guard.OfValue(*Key, *Run.Cursor.OpenKey(), Item.ValueName);
  if (Opened != TRegStatus::Ok)
    return Answer == TGuardAnswer::Delete &&
                   Run.Registry.DeleteValue(Item.ValueName) == TRegStatus::Ok
               ? TRemoval::FromOtherKey
               : RemovalOf(Opened);
  return Answer == TGuardAnswer::Delete ? RemovalOf(Run.Registry.DeleteValue(Item.ValueName))
                                        : RemovalOf(Answer);
}

void TRegistryClean::WriteBackup(TFixRun &Run) {
  PruneBackups(Run);
  const std::u16string Path = Paths.BackupFolderPath + Run.Report.BackupName;
  Run.Report.BackupFailure = About(Path, Platform_.Storage->RenameNew(PreparedPath(Run), Path));
}

// Two of the old backups stay. What has no text is not counted with them: of those the
// newest ten stay, so that restores do not drive out backups. This fix's own stays in any
// case, and so does a record that can't be read now: nobody knows how old it is.
void TRegistryClean::PruneBackups(const TFixRun &Run) {
  std::vector<TBackupEntry> Backups = EnumerateBackups();
  const auto Bare =
      std::stable_partition(Backups.begin(), Backups.end(), std::mem_fn(&TBackupEntry::HasText));
  std::vector<TBackupEntry> Surplus = SurplusOf({Backups.begin(), Bare});
  constexpr std::ptrdiff_t KeptBare = 10;
  const std::ptrdiff_t BareSurplus = std::max<std::ptrdiff_t>(Backups.end() - Bare - KeptBare, 0);
  Surplus.insert(Surplus.end(), Bare, Bare + BareSurplus);
  for (const TBackupEntry &Backup : Surplus)
    if (Backup.Name != Run.Report.BackupName && Backup.Record != TUndoState::Unreadable)
      DeleteHeldBackup(Backup.Name);
}

} // namespace hivesweep
