#include "repair/FixSteps.h"

namespace hivesweep {

namespace {

std::u16string_view WithoutBreaks(std::u16string_view Path) {
  while (Path.starts_with(u'\\'))
    Path.remove_prefix(1);
  while (Path.ends_with(u'\\'))
    Path.remove_suffix(1);
  return Path;
}

// Works out what each step deletes, as far as that can be known beforehand.
class TFixMarking {
public:
  TFixMarking(TUndoRecord &Record) : Record_(Record) {}

  void Take(const TItemInfo &Item, const TFixStep &Step) {
    switch (Step.Action) {
    case TFixAction::RemoveFile:
      if (Record_.Before.Files.contains(Item.Data))
        Record_.Marks.Files[Item.Data] = TUndoMark::Taken;
      break;
    case TFixAction::RemoveKey:
      TakeTree(Cursor_.Aim(Step));
      break;
    case TFixAction::RemoveValue:
      TakeValue(Cursor_.Aim(Step), Item.ValueName);
      break;
    }
  }

private:
  // Where two places show as one key, the first that is there is what goes. The other
  // is marked as well, in case the first has gone by then.
  void TakeTree(const TKeyPlace &Place) {
    TUndoMark Mark = TUndoMark::Taken;
    for (const TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path)) {
      if (!IsThere(Stored))
        continue;
      MarkTree(Stored, Mark);
      if (Mark == TUndoMark::Taken)
        Deleted_.insert(Stored);
      Mark = TUndoMark::Named;
    }
  }

  void MarkTree(const TKeyPlace &Top, TUndoMark Mark) {
    const TSavedKeys &Keys = Record_.Before.Keys;
    const auto MarkOne = [&](const auto &Entry) {
      Record_.Marks.MarkKey(Entry.first, Mark);
      for (const auto &[Name, Value] : Entry.second.Values)
        Record_.Marks.MarkValue(Entry.first, Name, Mark);
    };
    if (const auto Itself = Keys.find(Top); Itself != Keys.end())
      MarkOne(*Itself);
    for (auto Key = Keys.lower_bound({Top.Root, Top.Path + u"\\"});
         Key != Keys.end() && IsAtOrBelow(Key->first, Top); ++Key)
      MarkOne(*Key);
  }

  void TakeValue(TKeyPlace Place, std::u16string_view Name) {
    for (const TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path)) {
      if (IsThere(Stored)) {
        Cursor_.Opened(std::move(Place));
        break;
      }
    }
    if (!Cursor_.OpenKey())
      return;
    TUndoMark Mark = TUndoMark::Taken;
    for (const TKeyPlace &Stored : StoredPlaces(Cursor_.OpenKey()->Root, Cursor_.OpenKey()->Path)) {
      if (!Record_.Before.FindValue(Stored, Name))
        continue;
      Record_.Marks.MarkValue(Stored, Name, Mark);
      Mark = TUndoMark::Named;
    }
  }

  // The key is there by the time of this step.
  bool IsThere(const TKeyPlace &Place) const {
    if (!Record_.Before.Keys.contains(Place))
      return false;
    for (TKeyPlace Top = Place; !Top.Path.empty(); Top = ParentOf(Top))
      if (Deleted_.contains(Top))
        return false;
    return true;
  }

  TUndoRecord &Record_;
  TFixCursor Cursor_;
  std::set<TKeyPlace, TKeyPlaceLess> Deleted_;
};

TFixAction ActionOf(const TItemInfo &Item, std::u16string_view ShortcutCaption) {
  if (Item.Action)
    return *Item.Action;
  if (Item.TypeName == ShortcutCaption)
    return TFixAction::RemoveFile;
  return Trim(Item.ValueName) == WholeKey ? TFixAction::RemoveKey : TFixAction::RemoveValue;
}

// "C:\..." or "\\server\...".
bool IsFullPath(std::u16string_view Path) {
  return Path.starts_with(u"\\\\") || (Path.size() > 2 && Path.substr(1, 2) == u":\\");
}

} // namespace

std::optional<TFixStep> StepOf(const TItemInfo &Item, std::u16string_view ShortcutCaption) {
  const std::u16string_view KeyPath = Item.KeyPath;
  const TFixAction Action = ActionOf(Item, ShortcutCaption);
  if (Action == TFixAction::RemoveFile) {
    if (Item.Data != KeyPath || !IsFullPath(KeyPath))
      return std::nullopt;
    return TFixStep{Action, std::nullopt, {}};
  }
  const std::size_t Break = KeyPath.find(u'\\');
  const bool HasRoot = Break != std::u16string_view::npos;
  return TFixStep{Action, HasRoot ? RegRootByName(KeyPath.substr(0, Break)) : std::nullopt,
                  HasRoot ? KeyPath.substr(Break) : KeyPath};
}

TKeyPlace TFixCursor::Aim(const TFixStep &Step) {
  if (Step.Root && *Step.Root != Root_) {
    Root_ = *Step.Root;
    Open_.reset();
  }
  const std::u16string_view Path = WithoutBreaks(Step.Path);
  if (Step.Path.starts_with(u'\\') || !Open_ || Open_->Path.empty())
    return {Root_, std::u16string(Path)};
  return {Root_, Path.empty() ? Open_->Path : Open_->Path + u"\\" + std::u16string(Path)};
}

void ForEachStep(const TListViewManage &Problems, std::u16string_view ShortcutCaption,
                 const TGoesOn &GoesOn,
                 const std::function<void(const TItemInfo &, const TFixStep &)> &Take) {
  for (std::int32_t Index = 0; Index < Problems.GroupCount(); ++Index) {
    for (std::int32_t Row = Problems.GetGroup(Index)->Count() - 1; Row >= 0; --Row) {
      if (!GoesOn())
        return;
      const TGroupItems *const Group = Problems.GetGroup(Index);
      const TItemInfo *const Item = Group ? Group->Get(Row) : nullptr;
      if (!Item)
        break; // a handler of messages has removed it
      if (const auto Step = Item->Checked ? StepOf(*Item, ShortcutCaption) : std::nullopt)
        Take(*Item, *Step);
    }
  }
}

TUndoRecord RecordFix(TPlatform &Platform, const TListViewManage &Problems,
                      std::u16string_view ShortcutCaption, const TGoesOn &Asked) {
  // Nobody is asked again who has said that it ends.
  bool IsLeft = false;
  const TGoesOn GoesOn = [&] {
    IsLeft = IsLeft || !Asked();
    return !IsLeft;
  };
  TScope Scope;
  TUndoRecord Record;
  TFixCursor Cursor;
  ForEachStep(Problems, ShortcutCaption, GoesOn, [&](const TItemInfo &Item, const TFixStep &Step) {
    ++Record.Changes;
    if (Step.Action == TFixAction::RemoveFile) {
      Scope.Files.insert(Item.Data);
      return;
    }
    TKeyPlace Place = Cursor.Aim(Step);
    const bool IsTree = Step.Action == TFixAction::RemoveKey;
    for (TKeyPlace &Stored : StoredPlaces(Place.Root, Place.Path))
      (IsTree ? Scope.Trees : Scope.Keys).insert(std::move(Stored));
    if (!IsTree)
      Cursor.Opened(std::move(Place));
  });
  Record.ViewBits = ThisView();
  Record.Before = TakeSnapshot(Platform, Scope, TSpelling::AsStored, GoesOn);
  TFixMarking Marking(Record);
  ForEachStep(Problems, ShortcutCaption, GoesOn,
              [&](const TItemInfo &Item, const TFixStep &Step) { Marking.Take(Item, Step); });
  return Record;
}

} // namespace hivesweep
