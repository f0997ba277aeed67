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
      LeaveUnfinished(PathOf(*Unread) + u" can't be read");
      return;
    }
    if (const auto Failures = PutBack(Platform_, Present, Base); !Failures.empty()) {
      LeaveUnfinished(Failures.front().Path + u" can't be put back");
      return;
    }
    Present = Undone(*Record_, Base);
    Report_.NotRestored = PutBack(Platform_, Base, Present);
  }
  Report_.UndoName = EndRecord(Present);
}

// The record stays as it is: the next restore, of whatever backup, begins with going
// back to where this one began.
void TRestore::LeaveUnfinished(std::u16string_view Why) {
  Report_.Failure = u"the restore could not be finished, and will be taken back before the next "
                    u"one: " +
                    std::u16string(Why);
}

// A restore that was broken off may have left anything between its two states behind,
// things of the editor's making included. It goes back to where it began; what it is
// then replaced by starts from there.
bool TRestore::PutInterruptedRight() {
  TDiskError Error;
  const std::vector<TUndoFile> Files = Undo_.List(&Error);
  if (!Error.empty())
    return Fail(Error);
  // NOLINTNEXTLINE(modernize-loop-convert): clang 14 has no view from behind
  for (auto File = Files.rbegin(); File != Files.rend(); ++File) {
    if (!File->IsPending)
      continue;
    std::u16string Why;
    bool IsUnreadable = false;
    std::optional<TUndoRecord> Record = Undo_.Load(File->Name, Why, &IsUnreadable);
    if (IsUnreadable)
      return Fail(Why);
    if (!Record)
      Note(Why + u"; what was left of an interrupted restore stays as it is");
    else if (Record->Finished ? !Undo_.Finish(*Record, *File).empty()
                              : !RollBack(*File, *std::move(Record)))
      return Fail(u"the rest of an interrupted restore can't be put right");
  }
  return true;
}

bool TRestore::RollBack(const TUndoFile &File, TUndoRecord Record) {
  if (!BeginRecord(Record.Before.Scope))
    return false;
  const bool AllPut = PutBack(Platform_, Own_.Before, Record.Before).empty();
  EndRecord(Record.Before);
  if (AllPut)
    return Undo_.Remove(File.Name).empty();
  // It must not keep all later restores from beginning: what it still holds can be
  // restored like a backup.
  Note(u"not all of an interrupted restore could be taken back; the rest is in " + File.BackupName);
  Record.Marks = MarksOfChange(Record.Before, TakeSnapshot(Platform_, Record.Before.Scope));
  Record.Finished = true;
  return Undo_.Finish(Record, File).empty();
}

// A record that is there and can't be read now is worth waiting for: without it some
// would come back only as the text has it. One that is damaged never will be.
bool TRestore::LoadRecord() {
  TDiskError Error;
  std::u16string Why = u"there is no exact record of it";
  if (const std::optional<TUndoFile> File = Undo_.Of(Backup_.Name, &Error)) {
    bool IsUnreadable = false;
    Record_ = Undo_.Load(File->Name, Why, &IsUnreadable);
    if (IsUnreadable)
      Error = Why;
  }
  if (!Error.empty())
    return Fail(Error);
  if (!Record_ && !Backup_.HasText)
    return Fail(Why);
  if (!Record_)
    Note(Why + u"; only what the backup's text holds is restored");
  return true;
}

bool TRestore::LoadText() {
  if (!Backup_.HasText)
    return true;
  std::string Bytes;
  if (const TDiskError Error = Platform_.Storage->Read(Backup_.Path, Bytes); !Error.empty())
    return Fail(Backup_.Path + u": " + Error);
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
  const TDiskError Error = Undo_.Save(Own_, BackupNameOf(Platform_.Clock->Now()), OwnFile_);
  return Error.empty() || Fail(u"what is there now could not be recorded: " + Error);
}

// What can't be read now and could be when it was fixed is not replaced unseen: another
// time it can be. A key that one may not look into is safe from the editor as well.
bool TRestore::IsRecordWhole() {
  for (const auto &[Place, Status] : Own_.Before.UnreadableKeys) {
    if (Status != TRegStatus::Failed || (Record_ && !Record_->Before.Knows(Place)))
      continue;
    Undo_.Remove(OwnFile_.Name);
    return Fail(PathOf(Place) + u" can't be read");
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
  const TDiskError Error = Changed ? Undo_.Finish(Own_, OwnFile_) : Undo_.Remove(OwnFile_.Name);
  if (!Error.empty())
    Note(u"the record of this restore could not be finished: " + Error);
  return Changed ? OwnFile_.BackupName : u"";
}

void TRestore::StartEditor() {
  Editor_ = Platform_.Shell->Start(u"Regedit", u"/s \"" + Backup_.Path + u"\"");
  if (!Editor_)
    Note(u"the registry editor could not be started");
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

bool TRestore::Fail(std::u16string_view Why) {
  if (Report_.Failure.empty())
    Report_.Failure = u"nothing was restored: " + std::u16string(Why);
  return false;
}

} // namespace hivesweep
