#include "repair/Snapshot.h"

#include <algorithm>
#include <array>
#include <memory>
#include <utility>

namespace hivesweep {

namespace {

constexpr std::size_t RootCount = 4;

TKeyPlace Below(const TKeyPlace &Parent, std::u16string_view Name) {
  return {Parent.Root,
          Parent.Path.empty() ? std::u16string(Name) : Parent.Path + u"\\" + std::u16string(Name)};
}

TRegStatus RegStatusOf(TFileStatus Status) {
  switch (Status) {
  case TFileStatus::Ok:
    return TRegStatus::Ok;
  case TFileStatus::NotFound:
    return TRegStatus::NotFound;
  case TFileStatus::Denied:
    return TRegStatus::Denied;
  case TFileStatus::Failed:
    break;
  }
  return TRegStatus::Failed;
}

// The roots, each opened once.
class TRoots {
public:
  explicit TRoots(TRegistryHost &Host) : Host_(Host) {}

  TRegKey *Get(TRegRoot Root) {
    std::unique_ptr<TRegKey> &Key = Keys_[static_cast<std::size_t>(Root)];
    if (!Key)
      Key = Host_.Open(Root, u"", TRegAccess::Read).Key;
    return Key.get();
  }

  TRegOpened Open(const TKeyPlace &Place, TRegAccess Access) {
    TRegKey *const Root = Get(Place.Root);
    return Root ? Root->Open(Place.Path, Access) : TRegOpened();
  }
  TRegOpened OpenItself(const TKeyPlace &Place, TRegAccess Access) {
    TRegKey *const Root = Get(Place.Root);
    return Root ? Root->OpenItself(Place.Path, Access) : TRegOpened();
  }

private:
  TRegistryHost &Host_;
  std::array<std::unique_ptr<TRegKey>, RootCount> Keys_;
};

class TSnapshotReader {
public:
  TSnapshotReader(TPlatform &Platform, TSpelling Spelling, TSnapshot &Out)
      : Platform_(Platform), Spelling_(Spelling), Roots_(*Platform.Registry), Out_(Out) {}

  void ReadTree(const TKeyPlace &Place) {
    if (std::unique_ptr<TRegKey> Key = Begin(Place, true))
      ReadAll(std::move(Key), Spelling_ == TSpelling::AsStored ? AsStored(Place) : Place);
  }

  void ReadKey(const TKeyPlace &Place) {
    if (Out_.Scope.IsInTree(Place))
      return; // read already
    if (std::unique_ptr<TRegKey> Key = Begin(Place, false))
      ReadContent(*Key, Place);
  }

  void ReadFile(const std::u16string &Path) {
    Out_.Scope.Files.insert(Path);
    TFileContent Content;
    const TFileStatus Status = Platform_.Files->ReadContent(Path, Content);
    if (Status == TFileStatus::Ok)
      Out_.Files.emplace(Path, std::move(Content));
    else if (Status != TFileStatus::NotFound)
      Out_.UnreadableFiles.emplace(Path, Status);
  }

private:
  struct TLevel {
    std::unique_ptr<TRegKey> Key;
    TKeyPlace Place;
    std::vector<std::u16string> Subkeys; // those that are still to be read
  };

  // Opens a key of the scope and takes it into the snapshot's own scope.
  std::unique_ptr<TRegKey> Begin(const TKeyPlace &Place, bool Tree) {
    // A tree is deleted with its links; values are deleted where a link leads, and so the
    // editor writes them.
    TRegOpened Opened =
        Tree ? Roots_.OpenItself(Place, TRegAccess::Read) : Roots_.Open(Place, TRegAccess::Read);
    if (!Tree && Opened.Status == TRegStatus::NotFound &&
        Roots_.OpenItself(Place, TRegAccess::Read).Status != TRegStatus::NotFound)
      Opened.Status = TRegStatus::Failed; // it leads nowhere
    if (Opened.Status == TRegStatus::NotFound) {
      Out_.Scope.Trees.insert(TopmostMissing(Place));
      return nullptr;
    }
    (Tree ? Out_.Scope.Trees : Out_.Scope.Keys).insert(Place);
    if (Opened.Status != TRegStatus::Ok)
      Out_.UnreadableKeys.emplace(Place, Opened.Status);
    return std::move(Opened.Key);
  }

  TKeyPlace TopmostMissing(TKeyPlace Place) {
    for (;;) {
      TKeyPlace Parent = ParentOf(Place);
      if (Parent.Path.empty() || There_.contains(Parent))
        return Place;
      if (!Missing_.contains(Parent)) {
        const TRegStatus Status = Roots_.OpenItself(Parent, TRegAccess::Read).Status;
        if (Status != TRegStatus::NotFound) {
          There_.insert(Parent);
          if (Status == TRegStatus::Failed)
            Out_.UnreadableKeys.emplace(Parent, Status);
          return Place;
        }
        Missing_.insert(Parent);
      }
      Place = std::move(Parent);
    }
  }

  // A key that is made again takes its name from here, and whoever named it for the
  // snapshot may have spelled it another way. Each parent's names are fetched once.
  TKeyPlace AsStored(const TKeyPlace &Place) {
    const TKeyPlace Parent = ParentOf(Place);
    auto Known = Spellings_.find(Parent);
    if (Known == Spellings_.end()) {
      std::vector<std::u16string> Names;
      if (const TRegOpened Opened = Roots_.Open(Parent, TRegAccess::Read); Opened.Key)
        Opened.Key->SubkeyNames(Names);
      Known = Spellings_.try_emplace(Parent).first;
      for (std::u16string &Name : Names)
        Known->second.insert(std::move(Name));
    }
    const std::size_t NameAt = Parent.Path.empty() ? 0 : Parent.Path.size() + 1;
    const auto Name = Known->second.find(Place.Path.substr(NameAt));
    return Name == Known->second.end() ? Place : Below(Parent, *Name);
  }

  // With a stack of its own: the registry may be deeper than this program's.
  void ReadAll(std::unique_ptr<TRegKey> Top, const TKeyPlace &Place) {
    std::vector<TLevel> Levels;
    Enter(Levels, std::move(Top), Place);
    while (!Levels.empty()) {
      TLevel &Level = Levels.back();
      if (Level.Subkeys.empty()) {
        Levels.pop_back();
        continue;
      }
      const TKeyPlace Subkey = Below(Level.Place, Level.Subkeys.back());
      TRegOpened Opened = Level.Key->OpenItself(Level.Subkeys.back(), TRegAccess::Read);
      Level.Subkeys.pop_back();
      if (Opened.Status == TRegStatus::Ok)
        Enter(Levels, std::move(Opened.Key), Subkey);
      else if (Opened.Status != TRegStatus::NotFound)
        Out_.UnreadableKeys.emplace(Subkey, Opened.Status);
    }
  }

  void Enter(std::vector<TLevel> &Levels, std::unique_ptr<TRegKey> Key, const TKeyPlace &Place) {
    ReadContent(*Key, Place);
    TLevel Level{std::move(Key), Place, {}};
    if (const TRegStatus Status = Level.Key->SubkeyNames(Level.Subkeys); Status != TRegStatus::Ok)
      Out_.UnreadableKeys.emplace(Place, Status);
    Levels.push_back(std::move(Level));
  }

  void ReadContent(TRegKey &Key, const TKeyPlace &Place) {
    Platform_.Messages->Pump();
    TSavedKey Saved;
    TRegStatus Status = Key.ReadInfo(Saved.Info);
    if (Status == TRegStatus::Ok)
      Status = Key.Values(Values_);
    for (std::size_t Index = 0; Status == TRegStatus::Ok && Index < Values_.Count(); ++Index) {
      const TRegValueList::TEntry Entry = Values_[Index];
      const std::span<const std::byte> Bytes = Entry.Data.Bytes();
      Saved.Values.insert_or_assign(std::u16string(Entry.Name),
                                    TSavedValue{Entry.Data.Type(),
                                                {Bytes.begin(), Bytes.end()},
                                                static_cast<std::uint32_t>(Index)});
    }
    if (Status == TRegStatus::Ok)
      Out_.Keys.insert_or_assign(Place, std::move(Saved));
    else if (Status != TRegStatus::NotFound)
      Out_.UnreadableKeys.emplace(Place, Status);
  }

  TPlatform &Platform_;
  const TSpelling Spelling_;
  TRoots Roots_;
  TSnapshot &Out_;
  TRegValueList Values_;
  std::map<TKeyPlace, std::set<std::u16string, TNameLess>, TKeyPlaceLess> Spellings_;
  std::set<TKeyPlace, TKeyPlaceLess> There_;
  std::set<TKeyPlace, TKeyPlaceLess> Missing_;
};

std::vector<TSavedValues::const_iterator> InOrder(const TSavedValues &Values) {
  std::vector<TSavedValues::const_iterator> Out;
  Out.reserve(Values.size());
  for (auto Value = Values.begin(); Value != Values.end(); ++Value)
    Out.push_back(Value);
  std::ranges::sort(Out, {}, [](const auto &Value) { return Value->second.Order; });
  return Out;
}

class TPuttingBack {
public:
  TPuttingBack(TPlatform &Platform, const TSnapshot &Present, const TSnapshot &Wanted)
      : Platform_(Platform), Roots_(*Platform.Registry), Present_(Present), Wanted_(Wanted) {}

  std::vector<TPutFailure> Run() {
    RemoveKeys();
    for (const auto &[Place, Key] : Wanted_.Keys) {
      const auto Unreadable = Present_.UnreadableKeys.find(Place);
      if (Unreadable != Present_.UnreadableKeys.end() || IsBelowUnmade(Place))
        Note(TRegStatus::Failed, PathOf(Place), u"");
      else
        PutKey(Place, Key);
    }
    PutFiles();
    return std::move(Failures_);
  }

private:
  // A tree that is not wanted at all goes with its topmost key.
  void RemoveKeys() {
    const TKeyPlace *Removed = nullptr;
    for (const auto &[Place, Key] : Present_.Keys) {
      if ((Removed && IsAtOrBelow(Place, *Removed)) || IsWanted(Place) ||
          !Present_.Scope.IsInTree(Place) || !Wanted_.Knows(Place))
        continue;
      Removed = &Place;
      if (Present_.IsUnreadable(Place)) {
        Note(TRegStatus::Denied, PathOf(Place), u"");
        continue;
      }
      TRegKey *const Root = Roots_.Get(Place.Root);
      const TRegStatus Status = Root ? Root->DeleteTree(Place.Path) : TRegStatus::Failed;
      if (Status != TRegStatus::NotFound)
        Note(Status, PathOf(Place), u"");
    }
  }

  // The place or something below it. In the order of the map all below a place follows
  // it, but not always at once: "A B" stands between "A" and "A\B".
  bool IsWanted(const TKeyPlace &Place) const {
    if (Wanted_.Keys.contains(Place))
      return true;
    const auto First = Wanted_.Keys.lower_bound({Place.Root, Place.Path + u"\\"});
    return First != Wanted_.Keys.end() && IsAtOrBelow(First->first, Place);
  }

  // A key below one that could not be made would make that too, without its class.
  bool IsBelowUnmade(const TKeyPlace &Place) const {
    if (Unmade_.empty())
      return false;
    for (TKeyPlace Top = Place; !Top.Path.empty(); Top = ParentOf(Top))
      if (Unmade_.contains(Top))
        return true;
    return false;
  }

  void PutKey(const TKeyPlace &Place, const TSavedKey &Wanted) {
    const auto Found = Present_.Keys.find(Place);
    const TSavedValues *const Present =
        Found == Present_.Keys.end() ? nullptr : &Found->second.Values;
    if (Present && HasSameValues(*Present, Wanted.Values))
      return;
    TRegOpened Opened;
    if (Present)
      Opened = Present_.Scope.IsInTree(Place) ? Roots_.OpenItself(Place, TRegAccess::Full)
                                              : Roots_.Open(Place, TRegAccess::Full);
    else if (TRegKey *const Root = Roots_.Get(Place.Root))
      Opened = Root->Create(Place.Path, Wanted.Info);
    if (Opened.Status != TRegStatus::Ok) {
      Note(Opened.Status, PathOf(Place), u"");
      Unmade_.insert(Place);
      return;
    }
    PutValues(*Opened.Key, Place, Present ? *Present : TSavedValues(), Wanted.Values);
  }

  static bool HasSameValues(const TSavedValues &Left, const TSavedValues &Right) {
    return std::ranges::equal(Left, Right, [](const auto &One, const auto &Other) {
      return EqualNoCase(One.first, Other.first) && One.second.SameData(Other.second);
    });
  }

  void PutValues(TRegKey &Key, const TKeyPlace &Place, const TSavedValues &Present,
                 const TSavedValues &Wanted) {
    for (const auto &[Name, Value] : Present) {
      if (Wanted.contains(Name))
        continue;
      const TRegStatus Status = Key.DeleteValue(Name);
      if (Status != TRegStatus::NotFound)
        Note(Status, PathOf(Place), Name);
    }
    for (const auto &Value : InOrder(Wanted)) {
      const auto &[Name, Saved] = *Value;
      const auto Found = Present.find(Name);
      if (Found == Present.end() || !Found->second.SameData(Saved))
        Note(Key.SetValue(Name, Saved.Type, Saved.Bytes), PathOf(Place), Name);
    }
  }

  void PutFiles() {
    TFileSystem &Files = *Platform_.Files;
    for (const std::u16string &Path : Present_.Scope.Files) {
      const auto Unreadable = Present_.UnreadableFiles.find(Path);
      if (Unreadable != Present_.UnreadableFiles.end()) {
        Note(RegStatusOf(Unreadable->second), Path, u"");
        continue;
      }
      const auto Present = Present_.Files.find(Path);
      const auto Wanted = Wanted_.Files.find(Path);
      if (Wanted == Wanted_.Files.end()) {
        if (Present != Present_.Files.end() && !Wanted_.UnreadableFiles.contains(Path))
          Note(RegStatusOf(Files.RemoveFile(Path)), Path, u"");
      } else if (Present == Present_.Files.end() || Present->second.Bytes != Wanted->second.Bytes) {
        CreateFolderPath(Files, Path.substr(0, Path.rfind(u'\\')));
        Note(RegStatusOf(Files.WriteContent(Path, Wanted->second)), Path, u"");
      }
    }
  }

  void Note(TRegStatus Status, std::u16string Path, std::u16string_view Value) {
    if (Status != TRegStatus::Ok)
      Failures_.push_back({std::move(Path), std::u16string(Value), Status});
  }

  TPlatform &Platform_;
  TRoots Roots_;
  const TSnapshot &Present_;
  const TSnapshot &Wanted_;
  std::set<TKeyPlace, TKeyPlaceLess> Unmade_;
  std::vector<TPutFailure> Failures_;
};

} // namespace

std::vector<TKeyPlace> StoredPlaces(TRegRoot Root, std::u16string_view Path) {
  if (Root != TRegRoot::ClassesRoot)
    return {{Root, std::u16string(Path)}};
  const std::u16string Stored =
      (Path.empty() ? u"Software\\Classes" : u"Software\\Classes\\") + std::u16string(Path);
  return {{TRegRoot::CurrentUser, Stored}, {TRegRoot::LocalMachine, Stored}};
}

std::u16string PathOf(const TKeyPlace &Place) {
  return std::u16string(RegRootName(Place.Root)) + (Place.Path.empty() ? u"" : u"\\") + Place.Path;
}

TKeyPlace ParentOf(const TKeyPlace &Place) {
  const std::size_t Break = Place.Path.rfind(u'\\');
  return {Place.Root, Break == std::u16string::npos ? u"" : Place.Path.substr(0, Break)};
}

bool IsAtOrBelow(const TKeyPlace &Place, const TKeyPlace &Top) {
  const std::u16string_view Path = Place.Path;
  const std::size_t Length = Top.Path.size();
  return Place.Root == Top.Root && Path.size() >= Length &&
         (Length == 0 || Path.size() == Length || Path[Length] == u'\\') &&
         EqualNoCase(Path.substr(0, Length), Top.Path);
}

bool TScope::IsInTree(const TKeyPlace &Place) const {
  if (Trees.empty())
    return false;
  for (TKeyPlace Top = Place; !Top.Path.empty(); Top = ParentOf(Top))
    if (Trees.contains(Top))
      return true;
  return false;
}

void TScope::Add(const TScope &Other) {
  Keys.insert(Other.Keys.begin(), Other.Keys.end());
  Trees.insert(Other.Trees.begin(), Other.Trees.end());
  Files.insert(Other.Files.begin(), Other.Files.end());
}

const TSavedValue *TSnapshot::FindValue(const TKeyPlace &Place, std::u16string_view Name) const {
  const auto Key = Keys.find(Place);
  if (Key == Keys.end())
    return nullptr;
  const auto Value = Key->second.Values.find(Name);
  return Value == Key->second.Values.end() ? nullptr : &Value->second;
}

bool TSnapshot::Knows(const TKeyPlace &Place) const {
  if (UnreadableKeys.empty())
    return true;
  for (TKeyPlace Top = Place;; Top = ParentOf(Top)) {
    if (UnreadableKeys.contains(Top))
      return false;
    if (Top.Path.empty())
      return true;
  }
}

bool TSnapshot::IsUnreadable(const TKeyPlace &Place) const {
  if (UnreadableKeys.contains(Place))
    return true;
  const auto First = UnreadableKeys.lower_bound({Place.Root, Place.Path + u"\\"});
  return First != UnreadableKeys.end() && IsAtOrBelow(First->first, Place);
}

TSnapshot TakeSnapshot(TPlatform &Platform, const TScope &Scope, TSpelling Spelling) {
  TSnapshot Out;
  TSnapshotReader Reader(Platform, Spelling, Out);
  for (const TKeyPlace &Place : Scope.Trees)
    if (!Out.Scope.IsInTree(Place))
      Reader.ReadTree(Place);
  for (const TKeyPlace &Place : Scope.Keys)
    Reader.ReadKey(Place);
  for (const std::u16string &Path : Scope.Files)
    Reader.ReadFile(Path);
  return Out;
}

std::vector<TPutFailure> PutBack(TPlatform &Platform, const TSnapshot &Present,
                                 const TSnapshot &Wanted) {
  return TPuttingBack(Platform, Present, Wanted).Run();
}

} // namespace hivesweep
