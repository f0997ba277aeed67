#include "repair/Restore.h"

#include <algorithm>

#include "platform/Text.h"
#include "repair/BackupText.h"

namespace hivesweep {

namespace {

std::uint32_t CountMarks(const TUndoMarks &Marks) {
  std::size_t Count = Marks.Files.size();
  for (const auto &[Place, Key] : Marks.Keys)
    Count += std::max<std::size_t>(Key.Values.size(), 1);
  return static_cast<std::uint32_t>(Count);
}

} // namespace

bool TRestore::Begin() {
  if (!PutInterruptedRight() || !LoadRecord() || !LoadText())
    return false;
  TScope Scope = Text_;
  if (Record_)
    Scope.Add(Record_->Before.Scope);
  if (!BeginRecord(Scope) || !IsRecordWhole())
    return false;
  if (Backup_.HasText)
    StartEditor();
  return true;
}

bool TRestore::WaitForEditor(std::uint32_t Milliseconds) {
  return !Editor_ || Editor_->WaitForEnd(Milliseconds);
}

void TRestore::Finish() {
  TSnapshot Present = TakeSnapshot(Platform_, Own_.Before.Scope);
  if (Record_) {
    // First the editor's own work goes, keys that it made above all: they have no class
    // and the access list of any new key, and a key takes these only when it is made.
    const TSnapshot Base = WithoutImport(Present);
    if (const auto Unread = NewlyUnreadable(Present)) {
      LeaveUnfinished({TErrorCode::KeyUnreadable, PathOf(*Unread)});
      return;
    }
    if (const auto Failures = PutBack(Platform_, Present, Base); !Failures.empty()) {
      LeaveUnfinished({TErrorCode::KeyNotPutBack, Failures.front().Path});
      return;
    }
    Present = Undone(*Record_, Base);
    Report_.NotRestored = PutBack(Platform_, Base, Present);
  }
  Report_.UndoName = EndRecord(Present);
}

// The record stays as it is: the next restore, of whatever backup, begins with going
// back to where this one began.
void TRestore::LeaveUnfinished(TError Why) {
  Report_.Failure = Because(std::move(Why), TErrorCode::RestoreUnfinished);
}

// A restore that was broken off may have left anything between its two states behind,
// things of the editor's making included. It goes back to where it began; what it is
// then replaced by starts from there.
bool TRestore::PutInterruptedRight() {
  TError Error;
  const std::vector<TUndoFile> Files = Undo_.List(&Error);
  if (Error)
    return Fail(std::move(Error));
  // NOLINTNEXTLINE(modernize-loop-convert): clang 14 has no view from behind
  for (auto File = Files.rbegin(); File != Files.rend(); ++File) {
    if (!File->IsPending)
      continue;
    TError Why;
    std::optional<TUndoRecord> Record = Undo_.Load(File->Name, Why);
    if (Why.Code == TErrorCode::RecordUnreadable)
      return Fail(std::move(Why));
    if (!Record)
      Note(Because(std::move(Why), TErrorCode::InterruptedLeft));
    else if (Record->Finished ? bool(Undo_.Finish(*Record, *File))
                              : !RollBack(*File, *std::move(Record)))
      return Fail({TErrorCode::InterruptedNotPutRight, {}});
  }
  return true;
}

bool TRestore::RollBack(const TUndoFile &File, TUndoRecord Record) {
  if (!BeginRecord(Record.Before.Scope))
    return false;
  const bool AllPut = PutBack(Platform_, Own_.Before, Record.Before).empty();
  EndRecord(Record.Before);
  if (AllPut)
    return !Undo_.Remove(File.Name);
  // It must not keep all later restores from beginning: what it still holds can be
  // restored like a backup.
  Note({TErrorCode::InterruptedPartlyTakenBack, File.BackupName});
  Record.Marks = MarksOfChange(Record.Before, TakeSnapshot(Platform_, Record.Before.Scope));
  Record.Finished = true;
  return !Undo_.Finish(Record, File);
}

// A record that is there and can't be read now is worth waiting for: without it some
// would come back only as the text has it. One that is damaged never will be.
bool TRestore::LoadRecord() {
  TError Error;
  TError Why = {TErrorCode::NoRecord, {}};
  if (const std::optional<TUndoFile> File = Undo_.Of(Backup_.Name, &Error))
    Record_ = Undo_.Load(File->Name, Why);
  if (Error)
    return Fail(std::move(Error));
  if (Why.Code == TErrorCode::RecordUnreadable || (!Record_ && !Backup_.HasText))
    return Fail(std::move(Why));
  if (!Record_)
    Note(Because(std::move(Why), TErrorCode::TextOnly));
  return true;
}

bool TRestore::LoadText() {
  if (!Backup_.HasText)
    return true;
  std::string Bytes;
  if (TError Error = Platform_.Storage->Read(Backup_.Path, Bytes))
    return Fail(About(Backup_.Path, std::move(Error)));
  Text_ = ScopeOfBackup(DecodeBackup(Bytes));
  return true;
}

// From here on this restore can be rolled back.
bool TRestore::BeginRecord(const TScope &Scope) {
  Own_ = {};
  Own_.Kind = TUndoKind::Restore;
  Own_.ViewBits = ThisView();
  Own_.Finished = false;
  Own_.Before = TakeSnapshot(Platform_, Scope);
  TError Error = Undo_.Save(Own_, BackupNameOf(Platform_.Clock->Now()), OwnFile_);
  return !Error || Fail(Because(std::move(Error), TErrorCode::PresentNotRecorded));
}

// What can't be read now and could be when it was fixed is not replaced unseen: another
// time it can be. A key that one may not look into is safe from the editor as well.
bool TRestore::IsRecordWhole() {
  for (const auto &[Place, Status] : Own_.Before.UnreadableKeys) {
    if (Status != TRegStatus::Failed || (Record_ && !Record_->Before.Knows(Place)))
      continue;
    Undo_.Remove(OwnFile_.Name);
    return Fail({TErrorCode::KeyUnreadable, PathOf(Place)});
  }
  return true;
}

// The first key that could be read when this restore began.
std::optional<TKeyPlace> TRestore::NewlyUnreadable(const TSnapshot &Present) const {
  for (const auto &[Place, Status] : Present.UnreadableKeys)
    if (Own_.Before.Knows(Place))
      return Place;
  return std::nullopt;
}

// Answers the name by which what was done since BeginRecord can be undone; empty when
// nothing was. Wanted is what should be there now.
std::u16string TRestore::EndRecord(const TSnapshot &Wanted) {
  const TSnapshot After = TakeSnapshot(Platform_, Own_.Before.Scope);
  Own_.Marks = MarksOfChange(Own_.Before, NewlyUnreadable(After) ? Wanted : After);
  Own_.Changes = CountMarks(Own_.Marks);
  Own_.Finished = true;
  const bool Changed = Own_.Changes != 0;
  TError Error = Changed ? Undo_.Finish(Own_, OwnFile_) : Undo_.Remove(OwnFile_.Name);
  if (Error)
    Note(Because(std::move(Error), TErrorCode::RestoreRecordUnfinished));
  return Changed ? OwnFile_.BackupName : u"";
}

void TRestore::StartEditor() {
  Editor_ = Platform_.Shell->Start(u"Regedit", u"/s \"" + Backup_.Path + u"\"");
  if (!Editor_)
    Note({TErrorCode::EditorNotStarted, {}});
}

// The keys that the text names, and those on the way to them, as they were before the
// editor: it may have read a name otherwise than it was meant. All other keys as they
// are now: what somebody has changed meanwhile is none of the editor's.
TSnapshot TRestore::WithoutImport(TSnapshot Present) const {
  for (TKeyPlace Place : Text_.Keys) {
    while (!Place.Path.empty() && Own_.Before.Knows(Place)) {
      const auto Before = Own_.Before.Keys.find(Place);
      if (Before == Own_.Before.Keys.end())
        Present.Keys.erase(Place);
      else
        Present.Keys.insert_or_assign(Place, Before->second);
      Place = ParentOf(Place);
    }
  }
  return Present;
}

bool TRestore::Fail(TError Why) {
  if (!Report_.Failure)
    Report_.Failure = Because(std::move(Why), TErrorCode::NothingRestored);
  return false;
}

} // namespace hivesweep
