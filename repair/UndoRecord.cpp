#include "repair/UndoRecord.h"

#include <algorithm>

namespace hivesweep {

namespace {

void Strengthen(TUndoMark &Old, TUndoMark New) { Old = std::max(Old, New); }

bool HasKeyBelow(const TSavedKeys &Keys, const TKeyPlace &Place) {
  const auto First = Keys.lower_bound({Place.Root, Place.Path + u"\\"});
  return First != Keys.end() && IsAtOrBelow(First->first, Place);
}

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
