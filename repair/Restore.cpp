#include "repair/Restore.h"

#include <algorithm>
#include <utility>

#include "platform/Text.h"
#include "repair/BackupText.h"
#include "repair/FileStatus.h"

namespace hivesweep {

namespace {

std::uint32_t CountMarks(const TUndoMarks &Marks) {
  std::size_t Count = Marks.Files.size();
  for (const auto &[Place, Key] : Marks.Keys)
    Count += std::max<std::size_t>(Key.Values.size(), 1);
  return static_cast<std::uint32_t>(Count);
}

// What Other could not read is not known here either.
void ForgetUnreadable(TSnapshot &Snapshot, const TSnapshot &Other) {
  Snapshot.UnreadableKeys.insert(Other.UnreadableKeys.begin(), Other.UnreadableKeys.end());
  Snapshot.UnreadableFiles.insert(Other.UnreadableFiles.begin(), Other.UnreadableFiles.end());
  if (!Snapshot.UnreadableKeys.empty())
    std::erase_if(Snapshot.Keys, [&](const auto &Key) { return !Snapshot.Knows(Key.first); });
  std::erase_if(Snapshot.Files,
                [&](const auto &File) { return Snapshot.UnreadableFiles.contains(File.first); });
}

TSnapshot SnapshotOf(const TRestoreGoal &Goal) {
  TSnapshot Out;
  Out.Keys = Goal.Keys;
  Out.Files = Goal.Files;
  return Out;
}

// What can't be read Now and could be Before.
std::vector<TPutFailure> NewlyUnreadable(const TSnapshot &Now, const TSnapshot &Before) {
  std::vector<TPutFailure> Out;
  for (const auto &[Place, Status] : Now.UnreadableKeys)
    if (Before.Knows(Place))
      Out.push_back({PathOf(Place), {}, Status});
  for (const auto &[Path, Status] : Now.UnreadableFiles)
    if (!Before.UnreadableFiles.contains(Path))
      Out.push_back({Path, {}, RegStatusOf(Status)});
  return Out;
}

bool IsOfContent(const TPutFailure &Failure) { return Failure.Part == TPutPart::Content; }

} // namespace

bool TRestore::Begin() {
  if (!PutInterruptedRight() || !LoadRecord())
    return false;
  TError Doubt = LoadText();
  TScope Scope = Text_.Scope;
  if (Record_)
    Scope.Add(Record_->Before.Scope);
  Own_ = {};
  Own_.Before = TakeSnapshot(Platform_, Scope);
  const bool HasText = Backup_.HasText && !Doubt;
  if (HasText)
    Doubt = WhyTextUnrecorded();
  if (Doubt && !Record_)
    return Fail(std::move(Doubt));
  if (Doubt) {
    Text_ = {};
    Remark(Because(std::move(Doubt), TErrorCode::TextNotImported));
  }
  if (!BeginRecord(Record_ ? Undone(*Record_, Own_.Before) : WithText(Own_.Before), Backup_.Name))
    return false;
  if (!Text_.Scope.Keys.empty())
    StartEditor();
  return true;
}

bool TRestore::WaitForEditor(std::uint32_t Milliseconds) {
  return !Editor_ || Editor_->WaitForEnd(Milliseconds);
}

void TRestore::Finish() {
  TSnapshot After;
  TSnapshot Wanted;
  if (Record_) {
    Wanted = PutRecordBack(After);
  } else {
    After = TakeSnapshot(Platform_, Own_.Before.Scope);
    Wanted = SnapshotOf(*Own_.Goal);
    NoteMissingText(After);
  }
  Report_.UndoName = EndRecord(std::move(After), Wanted);
}

// ---- a restore that was broken off ---------------------------------------------------

bool TRestore::PutInterruptedRight() {
  TError Error;
  const std::vector<TUndoFile> Files = Undo_.List(&Error);
  if (Error)
    return Fail(std::move(Error));
  // The newest first: it began where the one before it had come to.
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
                              : !PutRight(*File, *std::move(Record)))
      return Fail({TErrorCode::InterruptedNotPutRight});
  }
  return true;
}

// It may have left anything between its two states behind, things of the editor's making
// included. What others have done since stays.
bool TRestore::PutRight(const TUndoFile &File, TUndoRecord Record) {
  Own_ = {};
  Own_.Before = TakeSnapshot(Platform_, Record.Before.Scope);
  if (!Record.Goal) // an older program's, which does not tell what that wrote
    return EndInterrupted(TErrorCode::InterruptedKept, File, std::move(Record), Own_.Before);
  const TTakenBack Taken = TakenBack(Record, Own_.Before);
  if (Taken.HasReachedGoal) {
    const TSnapshot Goal = SnapshotOf(*Record.Goal);
    return EndInterrupted(TErrorCode::InterruptedFinished, File, std::move(Record), Goal);
  }
  if (!BeginRecord(Taken.Wanted, Record.Goal->BackupName))
    return false;
  const bool AllPut = PutBack(Platform_, Own_.Before, Taken.Wanted).empty();
  const std::u16string UndoName =
      EndRecord(TakeSnapshot(Platform_, Own_.Before.Scope), Taken.Wanted);
  if (!UndoName.empty())
    Remark({TErrorCode::InterruptedTakenBack, UndoName});
  if (AllPut)
    return !Undo_.Remove(File.Name);
  // It must not keep all later restores from beginning: what it still holds can be
  // restored like a backup.
  const TSnapshot Now = TakeSnapshot(Platform_, Record.Before.Scope);
  return EndInterrupted(TErrorCode::InterruptedPartlyTakenBack, File, std::move(Record), Now);
}

// From now on it can be undone like one that came to its end by itself.
bool TRestore::EndInterrupted(TErrorCode How, const TUndoFile &File, TUndoRecord Record,
                              const TSnapshot &After) {
  Record.Marks = MarksOfChange(Record.Before, After);
  Record.Changes = CountMarks(Record.Marks);
  Record.Finished = true;
  Record.Goal.reset();
  if (Record.Changes == 0)
    return !Undo_.Remove(File.Name);
  (How == TErrorCode::InterruptedPartlyTakenBack ? Report_.Notes : Report_.Remarks)
      .push_back({How, File.BackupName});
  return !Undo_.Finish(Record, File);
}

// ---- before the editor ------------------------------------------------------------------

// A record that is there and can't be read now, or only by the other program, is worth
// waiting for: without it some would come back only as the text has it, and perhaps in the
// wrong half of the registry. One that is damaged never will be.
bool TRestore::LoadRecord() {
  TError Error;
  TError Why = {TErrorCode::NoRecord};
  if (const std::optional<TUndoFile> File = Undo_.Of(Backup_.Name, &Error))
    Record_ = Undo_.Load(File->Name, Why);
  if (Error)
    return Fail(std::move(Error));
  if (Why.Code == TErrorCode::RecordUnreadable || Why.Code == TErrorCode::RecordOfOtherView ||
      (!Record_ && !Backup_.HasText))
    return Fail(std::move(Why));
  if (!Record_)
    Note(Because(std::move(Why), TErrorCode::TextOnly));
  return true;
}

// Answers why the text must not be imported.
TError TRestore::LoadText() {
  if (!Backup_.HasText)
    return {};
  std::string Bytes;
  if (TError Error = Platform_.Storage->Read(Backup_.Path, Bytes))
    return About(Backup_.Path, std::move(Error));
  TEditorText Text = ReadAsEditor(Bytes);
  if (Text.DoubtfulLine != 0)
    return {TErrorCode::TextDoubtful, Backup_.Path, static_cast<std::uint32_t>(Text.DoubtfulLine)};
  Text_ = std::move(Text);
  return {};
}

// Every key that the editor can touch must have been recorded, or it could not be undone.
TError TRestore::WhyTextUnrecorded() const {
  for (const TKeyPlace &Key : Text_.Scope.Keys) {
    bool IsRecorded = Own_.Before.Knows(Key);
    const bool IsInTree = Own_.Before.Scope.IsInTree(Key);
    IsRecorded &= IsInTree || Own_.Before.Scope.Keys.contains(Key);
    // A tree is recorded without what its links lead to, and the editor follows them.
    for (TKeyPlace Top = Key; IsInTree && IsRecorded && !Top.Path.empty(); Top = ParentOf(Top)) {
      const auto Found = Own_.Before.Keys.find(Top);
      IsRecorded = Found == Own_.Before.Keys.end() || !Found->second.Info.IsLink;
    }
    if (!IsRecorded)
      return {TErrorCode::KeyUnreadable, PathOf(Key)};
  }
  return {};
}

// What the text alone would make of Present.
TSnapshot TRestore::WithText(TSnapshot Present) const {
  for (const TKeyPlace &Key : Text_.Scope.Keys)
    Present.Keys.try_emplace(Key);
  for (const TEditorValue &Value : Text_.Values)
    if (Value.IsFirst)
      Present.Keys[Value.Key].Values.insert_or_assign(Value.Name, Value.Value);
  return Present;
}

// From here on this restore can be taken back.
bool TRestore::BeginRecord(const TSnapshot &Wanted, std::u16string_view BackupName) {
  Own_.Kind = TUndoKind::Restore;
  Own_.ViewBits = ThisView();
  Own_.Finished = false;
  Own_.Goal = TRestoreGoal{std::u16string(BackupName), Wanted.Keys, Wanted.Files, {}, {}};
  for (const TKeyPlace &Key : Text_.Scope.Keys)
    if (!Own_.Before.Keys.contains(Key))
      Own_.Goal->EditorKeys.insert(Key);
  for (const TEditorValue &Value : Text_.Values) {
    const TSavedValue *const Goal = Wanted.FindValue(Value.Key, Value.Name);
    if (!Goal || !Goal->SameData(Value.Value))
      Own_.Goal->EditorValues.push_back(Value);
  }
  TError Error = Undo_.Save(Own_, BackupNameOf(Platform_.Clock->Now()), OwnFile_);
  return !Error || Fail(Because(std::move(Error), TErrorCode::PresentNotRecorded));
}

void TRestore::StartEditor() {
  Editor_ = Platform_.Shell->Start(u"Regedit", u"/s \"" + Backup_.Path + u"\"");
  if (!Editor_)
    Note({TErrorCode::EditorNotStarted});
}

// ---- after the editor -------------------------------------------------------------------

// Answers what should be there now; After is what is.
TSnapshot TRestore::PutRecordBack(TSnapshot &After) {
  // What failed is tried once more: another program may have been in the way for a moment.
  for (bool IsLast : {false, true}) {
    TSnapshot Present = TakeSnapshot(Platform_, Own_.Before.Scope);
    std::vector<TPutFailure> Failures = NewlyUnreadable(Present, Own_.Before);
    ForgetUnreadable(Present, Own_.Before);
    TSnapshot Wanted = Undone(*Record_, WithoutImport(Present));
    // First the keys go that the editor has made otherwise: a key takes its class and its
    // access list only when it is made.
    const TSnapshot Base = WithoutMismade(Present, Wanted);
    std::ranges::move(PutBack(Platform_, Present, Base), std::back_inserter(Failures));
    std::ranges::move(PutBack(Platform_, Base, Wanted), std::back_inserter(Failures));
    After = TakeSnapshot(Platform_, Own_.Before.Scope);
    Report_.NotRestored = Differences(After, Wanted, Failures);
    for (TPutFailure &Failure : NewlyUnreadable(After, Own_.Before))
      if (std::ranges::find(Report_.NotRestored, Failure.Path, &TPutFailure::Path) ==
          Report_.NotRestored.end())
        Report_.NotRestored.push_back(std::move(Failure));
    if (IsLast || (Failures.empty() && std::ranges::none_of(Report_.NotRestored, IsOfContent)))
      return Wanted;
  }
  return {};
}

// The keys that the text names, and those on the way to them, which were not there before.
std::set<TKeyPlace, TKeyPlaceLess> TRestore::EditorsKeys(const TSnapshot &Present) const {
  std::set<TKeyPlace, TKeyPlaceLess> Out;
  for (TKeyPlace Place : Text_.Scope.Keys)
    for (; !Place.Path.empty() && Own_.Before.Knows(Place); Place = ParentOf(Place))
      if (Present.Keys.contains(Place) && !Own_.Before.Keys.contains(Place))
        Out.insert(Place);
  return Out;
}

// The keys that the text names, and those on the way to them, as they were before the
// editor: it may have read a name otherwise than it was meant. All other keys as they
// are now: what somebody has changed meanwhile is none of the editor's.
TSnapshot TRestore::WithoutImport(TSnapshot Present) const {
  const std::set<TKeyPlace, TKeyPlaceLess> Made = EditorsKeys(Present);
  for (const TKeyPlace &Place : Text_.Scope.Keys)
    if (const auto Before = Own_.Before.Keys.find(Place);
        Before != Own_.Before.Keys.end() && Own_.Before.Knows(Place))
      Present.Keys.insert_or_assign(Place, Before->second);
  // From below. A key in which somebody has made another one meanwhile stays for that.
  // NOLINTNEXTLINE(modernize-loop-convert): clang 14 has no view from behind
  for (auto Place = Made.rbegin(); Place != Made.rend(); ++Place) {
    const bool ComesBack = Record_ && Record_->Marks.OfKey(*Place) == TUndoMark::Taken;
    if (!ComesBack && HasKeyBelow(Present.Keys, *Place))
      Present.Keys.at(*Place).Values.clear();
    else
      Present.Keys.erase(*Place);
  }
  return Present;
}

// Present without the trees of the editor's making whose first key is not wanted as it is.
// What else is in them must be of this restore's own making.
TSnapshot TRestore::WithoutMismade(TSnapshot Present, const TSnapshot &Wanted) const {
  const std::set<TKeyPlace, TKeyPlaceLess> Made = EditorsKeys(Present);
  const auto MayGo = [&](const TKeyPlace &Place, const TSavedKey &Now) {
    const auto Goal = Wanted.Keys.find(Place);
    return Made.contains(Place) ||
           (!Own_.Before.Keys.contains(Place) && Own_.Before.Knows(Place) &&
            Goal != Wanted.Keys.end() && SameInfo(Goal->second.Info, Now.Info) &&
            SameValues(Goal->second.Values, Now.Values));
  };
  for (const TKeyPlace &Top : Made) {
    const auto Goal = Wanted.Keys.find(Top);
    const auto Now = Present.Keys.find(Top);
    if (Now == Present.Keys.end() ||
        (Goal != Wanted.Keys.end() && SameInfo(Goal->second.Info, Now->second.Info)))
      continue;
    std::vector<TKeyPlace> Tree = {Top};
    bool MayAllGo = true;
    for (auto Key = Present.Keys.lower_bound({Top.Root, Top.Path + u"\\"});
         Key != Present.Keys.end() && IsAtOrBelow(Key->first, Top); ++Key) {
      MayAllGo &= MayGo(Key->first, Key->second);
      Tree.push_back(Key->first);
    }
    if (MayAllGo)
      for (const TKeyPlace &Key : Tree)
        Present.Keys.erase(Key);
  }
  return Present;
}

// What no editor can have left out on purpose is not there.
void TRestore::NoteMissingText(const TSnapshot &After) {
  for (auto Value = Text_.Values.begin(); Value != Text_.Values.end();) {
    const auto First = Value;
    bool IsThere = false;
    for (; Value != Text_.Values.end() && Value->Line == First->Line; ++Value) {
      const TSavedValue *const Now = After.FindValue(Value->Key, Value->Name);
      IsThere |= Now && Now->SameData(Value->Value);
    }
    if (!IsThere)
      Report_.NotRestored.push_back({PathOf(First->Key), First->Name, TRegStatus::Failed});
  }
}

// Answers the name by which what was done since BeginRecord can be undone; empty when
// nothing was. Of what can't be read After it is taken that it is as Wanted.
std::u16string TRestore::EndRecord(TSnapshot After, const TSnapshot &Wanted) {
  for (const auto &[Place, Key] : Wanted.Keys)
    if (!After.Knows(Place) && Own_.Before.Knows(Place))
      After.Keys.insert_or_assign(Place, Key);
  for (const auto &[Path, File] : Wanted.Files)
    if (After.UnreadableFiles.contains(Path))
      After.Files.insert_or_assign(Path, File);
  After.UnreadableKeys = Own_.Before.UnreadableKeys;
  After.UnreadableFiles = Own_.Before.UnreadableFiles;
  Own_.Marks = MarksOfChange(Own_.Before, After);
  Own_.Changes = CountMarks(Own_.Marks);
  Own_.Finished = true;
  Own_.Goal.reset();
  const bool Changed = Own_.Changes != 0;
  TError Error = Changed ? Undo_.Finish(Own_, OwnFile_) : Undo_.Remove(OwnFile_.Name);
  if (Error)
    Note(Because(std::move(Error), TErrorCode::RestoreRecordUnfinished));
  return Changed ? OwnFile_.BackupName : u"";
}

bool TRestore::Fail(TError Why) {
  if (!Report_.Failure)
    Report_.Failure = Because(std::move(Why), TErrorCode::NothingRestored);
  return false;
}

} // namespace hivesweep
