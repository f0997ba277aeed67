#include "repair/UndoRecord.h"

#include <algorithm>

namespace hivesweep {

namespace {

void Strengthen(TUndoMark &Old, TUndoMark New) { Old = std::max(Old, New); }

void UndoValues(TSavedKey &Key, const TSavedKey &Before, const TKeyMarks &Marks) {
  for (const auto &[Name, Mark] : Marks.Values) {
    if (Mark == TUndoMark::Added) {
      Key.Values.erase(Name);
      continue;
    }
    const auto Saved = Before.Values.find(Name);
    if (Saved == Before.Values.end())
      continue;
    if (Mark == TUndoMark::Taken)
      Key.Values.erase(Name);
    Key.Values.insert(*Saved); // over what is there only when it was taken
  }
}

void UndoFiles(const TUndoRecord &Record, TSnapshot &Out) {
  for (const auto &[Path, Mark] : Record.Marks.Files) {
    if (Mark == TUndoMark::Added) {
      Out.Files.erase(Path);
    } else if (const auto Saved = Record.Before.Files.find(Path);
               Saved != Record.Before.Files.end() && Mark == TUndoMark::Taken) {
      Out.Files.insert_or_assign(Path, Saved->second);
    }
  }
}

void MarkValuesOfChange(const TKeyPlace &Place, const TSavedKey *Before, const TSavedKey *After,
                        TUndoMarks &Out) {
  if (Before)
    for (const auto &[Name, Value] : Before->Values) {
      const auto Found = After ? After->Values.find(Name) : Before->Values.end();
      if (!After || Found == After->Values.end() || !Found->second.SameData(Value))
        Out.MarkValue(Place, Name, TUndoMark::Taken);
    }
  if (After)
    for (const auto &[Name, Value] : After->Values)
      if (!Before || !Before->Values.contains(Name))
        Out.MarkValue(Place, Name, TUndoMark::Added);
}

const TSavedKey *Find(const TSavedKeys &Keys, const TKeyPlace &Place) {
  const auto Found = Keys.find(Place);
  return Found == Keys.end() ? nullptr : &Found->second;
}

const TSavedValue *Find(const TSavedKey *Key, std::u16string_view Name) {
  if (!Key)
    return nullptr;
  const auto Found = Key->Values.find(Name);
  return Found == Key->Values.end() ? nullptr : &Found->second;
}

// Both are missing, or both have the same data.
bool AreSame(const TSavedValue *Left, const TSavedValue *Right) {
  return Left && Right ? Left->SameData(*Right) : Left == Right;
}

class TTakingBack {
public:
  TTakingBack(const TUndoRecord &Record, const TSnapshot &Present)
      : Record_(Record), Goal_(*Record.Goal), Present_(Present), Out_(Present) {
    for (const TEditorValue &Value : Goal_.EditorValues)
      EditorValues_[Value.Key].push_back(&Value);
    for (const TKeyPlace &Key : Goal_.EditorKeys)
      for (TKeyPlace Top = Key; !Top.Path.empty(); Top = ParentOf(Top))
        EditorKeys_.insert(Top);
  }

  TTakenBack Run() {
    std::set<TKeyPlace, TKeyPlaceLess> Places = EditorKeys_;
    for (const TSavedKeys *const Keys : {&Record_.Before.Keys, &Goal_.Keys})
      for (const auto &[Place, Key] : *Keys)
        Places.insert(Place);
    for (const auto &[Place, Values] : EditorValues_)
      Places.insert(Place);
    for (const TKeyPlace &Place : Places)
      TakeKeyBack(Place);
    RemoveEmptyKeys();
    TakeFilesBack();
    return {!IsUnreached_, std::move(Out_)};
  }

private:
  void TakeKeyBack(const TKeyPlace &Place) {
    const TSavedKey *const Before = Find(Record_.Before.Keys, Place);
    const TSavedKey *const Wanted = Find(Goal_.Keys, Place);
    const TSavedKey *const Present = Find(Present_.Keys, Place);
    if (!Present_.Knows(Place) || !Record_.Before.Knows(Place)) {
      IsUnreached_ = true;
    } else if (Present) {
      TakeValuesBack(Place, Before, Wanted, *Present);
      if (!Wanted || (!Before && !SameInfo(Wanted->Info, Present->Info)))
        IsUnreached_ = true;
      if (!Before && (Wanted || EditorKeys_.contains(Place)))
        Made_.insert(Place);
    } else if (Before && !Wanted) {
      Out_.Keys.emplace(Place, *Before); // the restore has removed it
    } else if (Wanted && !Before) {
      IsUnreached_ = true;
    }
  }

  void TakeValuesBack(const TKeyPlace &Place, const TSavedKey *Before, const TSavedKey *Wanted,
                      const TSavedKey &Present) {
    std::set<std::u16string_view, TNameLess> Names;
    for (const TSavedKey *const Key : {Before, Wanted, &Present})
      if (Key)
        for (const auto &[Name, Value] : Key->Values)
          Names.insert(Name);
    for (const std::u16string_view Name : Names) {
      const TSavedValue *const Old = Find(Before, Name);
      const TSavedValue *const Goal = Find(Wanted, Name);
      const TSavedValue *const Now = Find(&Present, Name);
      const bool IsEditors = Now && !AreSame(Now, Goal) && IsOfEditor(Place, Name, *Now);
      if (AreSame(Now, Old)) {
        IsUnreached_ |= !AreSame(Old, Goal);
      } else if (IsEditors || AreSame(Now, Goal)) {
        IsUnreached_ |= IsEditors;
        TSavedValues &Values = Out_.Keys.at(Place).Values;
        Values.erase(std::u16string(Name));
        if (Old)
          Values.emplace(Name, *Old);
      }
    }
  }

  bool IsOfEditor(const TKeyPlace &Place, std::u16string_view Name, const TSavedValue &Now) const {
    const auto Values = EditorValues_.find(Place);
    return Values != EditorValues_.end() &&
           std::ranges::any_of(Values->second, [&](const TEditorValue *Value) {
             return EqualNoCase(Value->Name, Name) && Value->Value.SameData(Now);
           });
  }

  // From below. What somebody has put into such a key keeps it.
  void RemoveEmptyKeys() {
    // NOLINTNEXTLINE(modernize-loop-convert): clang 14 has no view from behind
    for (auto Place = Made_.rbegin(); Place != Made_.rend(); ++Place)
      if (const auto Key = Out_.Keys.find(*Place);
          Key->second.Values.empty() && !HasKeyBelow(Out_.Keys, *Place))
        Out_.Keys.erase(Key);
  }

  void TakeFilesBack() {
    const auto BytesIn = [](const auto &Files, const std::u16string &Path) {
      const auto Found = Files.find(Path);
      return Found == Files.end() ? std::nullopt
                                  : std::optional<std::string_view>(Found->second.Bytes);
    };
    for (const std::u16string &Path : Record_.Before.Scope.Files) {
      const auto Old = BytesIn(Record_.Before.Files, Path);
      const auto Goal = BytesIn(Goal_.Files, Path);
      const auto Now = BytesIn(Present_.Files, Path);
      if (Old == Goal)
        continue;
      if (Present_.UnreadableFiles.contains(Path) || Now == Old) {
        IsUnreached_ = true;
      } else if (Now == Goal && Old) {
        Out_.Files.insert_or_assign(Path, Record_.Before.Files.at(Path));
      } else if (Now == Goal) {
        Out_.Files.erase(Path);
      }
    }
  }

  const TUndoRecord &Record_;
  const TRestoreGoal &Goal_;
  const TSnapshot &Present_;
  TSnapshot Out_;
  bool IsUnreached_ = false;
  std::map<TKeyPlace, std::vector<const TEditorValue *>, TKeyPlaceLess> EditorValues_;
  std::set<TKeyPlace, TKeyPlaceLess> EditorKeys_; // and those above them
  std::set<TKeyPlace, TKeyPlaceLess> Made_;       // there, and not made before the restore
};

} // namespace

void TUndoMarks::MarkKey(const TKeyPlace &Place, TUndoMark Mark) {
  Strengthen(Keys[Place].Key, Mark);
}

void TUndoMarks::MarkValue(const TKeyPlace &Place, std::u16string_view Name, TUndoMark Mark) {
  Strengthen(Keys[Place].Values[std::u16string(Name)], Mark);
}

TUndoMark TUndoMarks::OfKey(const TKeyPlace &Place) const {
  const auto Found = Keys.find(Place);
  return Found == Keys.end() ? TUndoMark::Kept : Found->second.Key;
}

TUndoMark TUndoMarks::OfValue(const TKeyPlace &Place, std::u16string_view Name) const {
  const auto Found = Keys.find(Place);
  if (Found == Keys.end())
    return TUndoMark::Kept;
  const auto Value = Found->second.Values.find(Name);
  return Value == Found->second.Values.end() ? TUndoMark::Kept : Value->second;
}

TSnapshot Undone(const TUndoRecord &Record, const TSnapshot &Present) {
  TSnapshot Out = Present;
  for (const auto &[Place, Marks] : Record.Marks.Keys) {
    static const TSavedKey Nothing;
    const auto Before = Record.Before.Keys.find(Place);
    const bool WasThere = Before != Record.Before.Keys.end();
    auto Key = Out.Keys.find(Place);
    if (Key == Out.Keys.end()) {
      // A key is only made for something of it that comes back.
      if (!WasThere || (Marks.Key == TUndoMark::Kept && Marks.Values.empty()))
        continue;
      Key = Out.Keys.emplace(Place, TSavedKey{Before->second.Info, {}}).first;
    }
    UndoValues(Key->second, WasThere ? Before->second : Nothing, Marks);
  }
  // From below, so that a key goes when all that is in it was added with it.
  // NOLINTNEXTLINE(modernize-loop-convert): clang 14 has no view from behind
  for (auto Marked = Record.Marks.Keys.rbegin(); Marked != Record.Marks.Keys.rend(); ++Marked) {
    const auto Key = Out.Keys.find(Marked->first);
    if (Marked->second.Key == TUndoMark::Added && Key != Out.Keys.end() &&
        Key->second.Values.empty() && !HasKeyBelow(Out.Keys, Marked->first))
      Out.Keys.erase(Key);
  }
  UndoFiles(Record, Out);
  return Out;
}

TTakenBack TakenBack(const TUndoRecord &Record, const TSnapshot &Present) {
  return Record.Goal ? TTakingBack(Record, Present).Run() : TTakenBack{false, Present};
}

TUndoMarks MarksOfGone(const TUndoMarks &Marks, const TSnapshot &Now) {
  TUndoMarks Out;
  for (const auto &[Place, Key] : Marks.Keys) {
    const bool IsKnown = Now.Knows(Place);
    if (Key.Key != TUndoMark::Kept && !(IsKnown && Now.Keys.contains(Place)))
      Out.MarkKey(Place, Key.Key);
    for (const auto &[Name, Mark] : Key.Values)
      if (!IsKnown || !Now.FindValue(Place, Name))
        Out.MarkValue(Place, Name, Mark);
  }
  for (const auto &[Path, Mark] : Marks.Files)
    if (!Now.Files.contains(Path))
      Out.Files[Path] = Mark;
  return Out;
}

TUndoMarks MarksOfChange(const TSnapshot &Before, const TSnapshot &After) {
  TUndoMarks Out;
  for (const auto &[Place, Key] : Before.Keys) {
    const auto Now = After.Keys.find(Place);
    const bool Remains = Now != After.Keys.end();
    if (!Remains && !After.Knows(Place))
      continue;
    if (!Remains)
      Out.MarkKey(Place, TUndoMark::Taken);
    MarkValuesOfChange(Place, &Key, Remains ? &Now->second : nullptr, Out);
  }
  for (const auto &[Place, Key] : After.Keys) {
    if (Before.Keys.contains(Place) || !Before.Knows(Place))
      continue;
    Out.MarkKey(Place, TUndoMark::Added);
    MarkValuesOfChange(Place, nullptr, &Key, Out);
  }
  for (const auto &[Path, Content] : Before.Files) {
    const auto Now = After.Files.find(Path);
    if (After.UnreadableFiles.contains(Path))
      continue;
    if (Now == After.Files.end() || Now->second.Bytes != Content.Bytes)
      Out.Files[Path] = TUndoMark::Taken;
  }
  for (const auto &[Path, Content] : After.Files)
    if (!Before.Files.contains(Path) && !Before.UnreadableFiles.contains(Path))
      Out.Files[Path] = TUndoMark::Added;
  return Out;
}

} // namespace hivesweep
