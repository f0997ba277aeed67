#include "repair/FixGuard.h"

#include <algorithm>

#include "repair/RegistryRoots.h"

namespace hivesweep {

TGuardAnswer TFixGuard::OfTree(const TKeyPlace &Place) const {
  for (const TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path)) {
    TScope Scope;
    Scope.Trees.insert(Stored);
    const TSnapshot Now = TakeSnapshot(Platform_, Scope, TSpelling::AsNamed);
    if (!Now.Keys.empty() || !Now.UnreadableKeys.empty())
      return OfSnapshot(Now);
  }
  return TGuardAnswer::Delete; // there is nothing to lose
}

TGuardAnswer TFixGuard::OfValue(TRegKey &Key, const TKeyPlace &Place,
                                std::u16string_view Name) const {
  constexpr auto AnswerOf = [](bool IsRecorded) {
    return IsRecorded ? TGuardAnswer::Delete : TGuardAnswer::NotRecorded;
  };
  if (Place.Root != TRegRoot::ClassesRoot)
    return AnswerOf(IsRecordedValue(Key, Place, Name));
  for (const TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path)) {
    const TRegOpened Opened = Platform_.Registry->Open(Stored.Root, Stored.Path);
    if (Opened.Status == TRegStatus::NotFound)
      continue;
    if (!Opened.Key || !IsRecordedValue(*Opened.Key, Stored, Name))
      return TGuardAnswer::NotRecorded;
  }
  return TGuardAnswer::Delete;
}

TGuardAnswer TFixGuard::OfFile(const std::u16string &Path) const {
  TFileContent Now;
  const TFileStatus Status = Platform_.Files->ReadContent(Path, Now);
  if (Status == TFileStatus::NotFound)
    return TGuardAnswer::Delete;
  const auto Saved = Record_.Before.Files.find(Path);
  return Status == TFileStatus::Ok && Saved != Record_.Before.Files.end() &&
                 Saved->second.Bytes == Now.Bytes
             ? TGuardAnswer::Delete
             : TGuardAnswer::NotRecorded;
}

TGuardAnswer TFixGuard::OfSnapshot(const TSnapshot &Now) const {
  if (!Now.UnreadableKeys.empty())
    return TGuardAnswer::NotRecorded;
  for (const auto &[Place, Key] : Now.Keys)
    if (const TGuardAnswer Answer = OfKey(Place, Key); Answer != TGuardAnswer::Delete)
      return Answer;
  // Last, because it may try something out.
  for (const auto &[Place, Key] : Now.Keys)
    if (!CanBeMadeAgain(Place, Key))
      return TGuardAnswer::Unlike;
  return TGuardAnswer::Delete;
}

TGuardAnswer TFixGuard::OfKey(const TKeyPlace &Place, const TSavedKey &Now) const {
  const auto Saved = Record_.Before.Keys.find(Place);
  if (Record_.Marks.OfKey(Place) == TUndoMark::Kept || Saved == Record_.Before.Keys.end() ||
      Saved->second.Info != Now.Info)
    return TGuardAnswer::NotRecorded;
  for (const auto &[Name, Value] : Now.Values) {
    const TSavedValue *const Recorded = Record_.Before.FindValue(Place, Name);
    if (!Recorded || !Recorded->SameData(Value))
      return TGuardAnswer::NotRecorded;
    if (Contains(Name, u'\0') || Name.size() > LongestValueName)
      return TGuardAnswer::Unlike; // such a name can be read, but not be given
  }
  return TGuardAnswer::Delete;
}

bool TFixGuard::CanBeMadeAgain(const TKeyPlace &Place, const TSavedKey &Key) const {
  if (!IsNewKeyPath(Place.Path) || Contains(Key.Info.ClassName, u'\0'))
    return false;
  if (Key.Info.Label.empty() && Key.Info.Volatile != TRegVolatile::NotTold)
    return true;
  const TRegOpened Opened = TRoots(*Platform_.Registry).OpenItself(Place, TRegAccess::Full);
  return Opened.Key && Opened.Key->TryLikeness(Key.Info) == TRegStatus::Ok;
}

bool TFixGuard::IsRecordedValue(TRegKey &Key, const TKeyPlace &Place,
                                std::u16string_view Name) const {
  TRegValue Now;
  const TRegStatus Status = Key.Read(Name, Now);
  if (Status == TRegStatus::NotFound)
    return true;
  const TSavedValue *const Saved = Record_.Before.FindValue(Place, Name);
  return Status == TRegStatus::Ok && Saved && Saved->Type == Now.Data().Type() &&
         std::ranges::equal(Saved->Bytes, Now.Data().Bytes()) &&
         Record_.Marks.OfValue(Place, Name) != TUndoMark::Kept;
}

} // namespace hivesweep
