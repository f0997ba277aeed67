#include "repair/RegistryClean.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

TRegistryClean::TRegistryClean(TPlatform &Platform)
    : IgnoreList(Platform, DataPathsOf(TAppFrame(*Platform.Folders)).IgnoreIniPath),
      Frame(*Platform.Folders), Paths(DataPathsOf(Frame)), Platform_(Platform),
      Settings_(Platform, Paths.MainIniPath),
      Undo_(*Platform.Storage, Paths.UndoFolderPath, Paths.BackupFolderPath),
      Lock_(Platform, Paths.LockPath) {
  CreateFolders();
}

TRegistryClean::TRegistryClean(TPlatform &Platform, TDataPaths DataPaths)
    : IgnoreList(Platform, DataPaths.IgnoreIniPath), Paths(std::move(DataPaths)),
      Platform_(Platform), Settings_(Platform, Paths.MainIniPath),
      Undo_(*Platform.Storage, Paths.UndoFolderPath, Paths.BackupFolderPath),
      Lock_(Platform, Paths.LockPath) {}

void TRegistryClean::CreateFolders() {
  TFileSystem &Files = *Platform_.Files;
  const std::u16string &Base = Frame.UserAppDataFolder;
  for (const std::u16string_view Folder : {u"\\Orvane\\", u"\\Orvane\\Tallowmere V4\\"}) {
    const std::u16string Path = Base + std::u16string(Folder);
    if (NoSuchFolder(Files, Path))
      Files.CreateFolder(Path);
  }
  CreateFolderPath(Files, Base + u"\\Orvane\\Tallowmere V4\\Hivesweep\\");
  // The name that is tested has two letters changed round, so the test hardly ever
  // finds anything and the folder is created, or found there, at every start. That
  // costs nothing, and a backup folder that was deleted comes back.
  if (NoSuchFolder(Files, Base + u"\\Orvnae\\Tallowmere V4\\Hivesweep\\backup\\"))
    CreateFolderPath(Files, Paths.BackupFolderPath);
}

// ---- backups ------------------------------------------------------------------------

std::vector<TBackupEntry> TRegistryClean::EnumerateBackups(TError *Error) const {
  return ListBackups(*Platform_.Storage, Undo_, Paths.BackupFolderPath, Error);
}

void TRegistryClean::FillBackups(TListRows &Rows) const { FillRows(EnumerateBackups(), Rows); }

bool TRegistryClean::RestoreBackup(std::u16string_view Name) {
  FinishRestore();
  RestoreReport_ = {};
  RestoreReport_.Failure = Because(Lock_.Take(), TErrorCode::NothingRestored);
  if (RestoreReport_.Failure)
    return false;
  TDataLockGuard Guard(Lock_);
  for (TBackupEntry &Backup : EnumerateBackups()) {
    if (Backup.Name != Name)
      continue;
    Restore_ = std::make_unique<TRestore>(Platform_, Undo_, std::move(Backup));
    if (Restore_->Begin()) {
      Guard.Keep(); // to the restore's end
      return true;
    }
    RestoreReport_ = Restore_->Report();
    Restore_.reset();
    return false;
  }
  RestoreReport_.Failure = {TErrorCode::NoSuchBackup, std::u16string(Name)};
  return false;
}

bool TRegistryClean::ContinueRestore(std::uint32_t Milliseconds) {
  if (!Restore_)
    return true;
  if (!Restore_->WaitForEditor(Milliseconds))
    return false;
  Restore_->Finish();
  RestoreReport_ = Restore_->Report();
  Restore_.reset();
  Lock_.GiveBack();
  return true;
}

void TRegistryClean::FinishRestore() {
  constexpr std::uint32_t Slice = 100;
  while (!ContinueRestore(Slice))
    Platform_.Messages->Pump();
}

std::vector<TError> TRegistryClean::InterruptedRestores() const {
  std::vector<TError> Out;
  if (Restore_)
    return Out;
  for (const TUndoFile &File : Undo_.List()) {
    if (!File.IsPending)
      continue;
    TError Why;
    const std::optional<TUndoRecord> Record = Undo_.Load(File.Name, Why);
    TError Told{TErrorCode::RestoreInterrupted,
                Record && Record->Goal ? Record->Goal->BackupName : File.BackupName};
    if (Why)
      Told.Cause.push_back(std::move(Why));
    if (!Record || !Record->Finished)
      Out.push_back(std::move(Told));
  }
  return Out;
}

TError TRegistryClean::DeleteBackup(std::u16string_view Name) {
  FinishRestore();
  if (TError Error = Lock_.Take())
    return Error;
  const TDataLockGuard Guard(Lock_);
  return DeleteHeldBackup(Name);
}

TError TRegistryClean::DeleteHeldBackup(std::u16string_view Name) {
  const std::vector<TBackupEntry> Backups = EnumerateBackups();
  const auto Backup = std::ranges::find(Backups, Name, &TBackupEntry::Name);
  if (Backup == Backups.end())
    return {TErrorCode::NoSuchBackup, std::u16string(Name)};
  // The text goes first. If the rest fails the backup is still listed, by its records.
  if (TError Error = Platform_.Storage->Remove(Backup->Path))
    return About(Backup->Path, std::move(Error));
  TError Error;
  if (const std::optional<TUndoFile> File = Undo_.Of(Name, &Error))
    Error = Undo_.Remove(File->Name);
  return About(Paths.UndoFolderPath, std::move(Error));
}

// ---- settings -----------------------------------------------------------------------

void TRegistryClean::LoadAreaSwitches(TAreaList &List) const {
  const TAreaSwitches Switches = ReadAreaSwitches(*Platform_.Profiles, Paths.MainIniPath);
  for (std::size_t Row = 0; Row < Switches.size(); ++Row)
    List.SetChecked(static_cast<int>(Row), Switches[Row]);
}

bool TRegistryClean::SaveAreaSwitches(const TAreaList &List) {
  TAreaSwitches Switches{};
  for (std::size_t Row = 0; Row < Switches.size(); ++Row)
    Switches[Row] = List.IsChecked(static_cast<int>(Row));
  return Settings_.WriteAreaSwitches(Switches);
}

void TRegistryClean::LoadSummary(TStatusLabel &LastScan, TStatusLabel &LastClean,
                                 TStatusLabel &Total, std::u16string_view NoneText) const {
  const TSummary Summary = Settings_.Summary(NoneText);
  LastScan.SetText(Summary.LastScan);
  LastClean.SetText(Summary.LastClean);
  Total.SetText(ToSignedDecimal(Summary.Total));
}

} // namespace hivesweep
