#include "repair/FixGuard.h"

#include <algorithm>

namespace hivesweep {

bool TFixGuard::MayDeleteTree(const TKeyPlace &Place) const {
  for (const TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path)) {
    TScope Scope;
    Scope.Trees.insert(Stored);
    const TSnapshot Now = TakeSnapshot(Platform_, Scope, TSpelling::AsNamed);
    if (!Now.Keys.empty() || !Now.UnreadableKeys.empty())
      return IsRecorded(Now);
  }
  return true; // there is nothing to lose
}

bool TFixGuard::MayDeleteValue(TRegKey &Key, const TKeyPlace &Place,
                               std::u16string_view Name) const {
  if (Place.Root != TRegRoot::ClassesRoot)
    return IsRecordedValue(Key, Place, Name);
  for (const TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path)) {
    const TRegOpened Opened = Platform_.Registry->Open(Stored.Root, Stored.Path);
    if (Opened.Status == TRegStatus::NotFound)
      continue;
    if (!Opened.Key || !IsRecordedValue(*Opened.Key, Stored, Name))
      return false;
  }
  return true;
}

bool TFixGuard::MayDeleteFile(const std::u16string &Path) const {
  TFileContent Now;
  const TFileStatus Status = Platform_.Files->ReadContent(Path, Now);
  if (Status == TFileStatus::NotFound)
    return true;
  const auto Saved = Record_.Before.Files.find(Path);
  return Status == TFileStatus::Ok && Saved != Record_.Before.Files.end() &&
         Saved->second.Bytes == Now.Bytes;
}

bool TFixGuard::IsRecorded(const TSnapshot &Now) const {
  if (!Now.UnreadableKeys.empty())
    return false;
  for (const auto &[Place, Key] : Now.Keys) {
    if (Record_.Marks.OfKey(Place) == TUndoMark::Kept || !Record_.Before.Keys.contains(Place))
      return false;
    for (const auto &[Name, Value] : Key.Values) {
      const TSavedValue *const Saved = Record_.Before.FindValue(Place, Name);
      // A name with a zero can be read but not made again.
      if (!Saved || !Saved->SameData(Value) || Contains(Name, u'\0'))
        return false;
    }
  }
  return true;
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
