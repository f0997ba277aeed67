#include "repair/Snapshot.h"

#include <algorithm>
#include <memory>
#include <utility>

#include "repair/RegistryRoots.h"

namespace hivesweep {

namespace {

TKeyPlace Below(const TKeyPlace &Parent, std::u16string_view Name) {
  return {Parent.Root,
          Parent.Path.empty() ? std::u16string(Name) : Parent.Path + u"\\" + std::u16string(Name)};
}

// A little-endian number in a security descriptor; 0 beyond its end.
std::size_t NumberAt(std::span<const std::byte> Bytes, std::size_t At, std::size_t Size) {
  std::size_t Out = 0;
  for (std::size_t Byte = Size; Byte > 0 && At < Bytes.size() && Size <= Bytes.size() - At; --Byte)
    Out = Out << 8 | std::to_integer<std::size_t>(Bytes[At + Byte - 1]);
  return Out;
}

// Size bytes of a self-relative descriptor; none when it does not hold them.
std::span<const std::byte> PartOf(std::span<const std::byte> Security, std::size_t At,
                                  std::size_t Size) {
  return At == 0 || At > Security.size() || Size > Security.size() - At
             ? std::span<const std::byte>()
             : Security.subspan(At, Size);
}

// A security identifier: 8 bytes and four for each part, whose count is its second byte.
std::span<const std::byte> OwnerOf(std::span<const std::byte> Security) {
  const std::size_t At = NumberAt(Security, 4, 4);
  return PartOf(Security, At, 8 + 4 * NumberAt(Security, At + 1, 1));
}

// An access list, whose size stands behind its first two bytes.
std::span<const std::byte> AccessListOf(std::span<const std::byte> Security) {
  const std::size_t At = NumberAt(Security, 16, 4);
  return PartOf(Security, At, NumberAt(Security, At + 2, 2));
}

class TSnapshotReader {
public:
  TSnapshotReader(TPlatform &Platform, TSpelling Spelling, const TGoesOn &GoesOn, TSnapshot &Out)
      : Platform_(Platform), Spelling_(Spelling), GoesOn_(GoesOn), Roots_(*Platform.Registry),
        Out_(Out) {}

  // Handles messages; false when nothing more is to be read.
  bool GoesOn() {
    if (!GoesOn_)
      Platform_.Messages->Pump();
    else
      IsLeft_ = IsLeft_ || !GoesOn_();
    return !IsLeft_;
  }

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
    while (!Levels.empty() && !IsLeft_) {
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
    if (!GoesOn())
      return;
    constexpr std::size_t ValuesPerLook = 256;
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
      if ((Index + 1) % ValuesPerLook == 0 && !GoesOn())
        return;
    }
    if (Status == TRegStatus::Ok)
      Out_.Keys.insert_or_assign(Place, std::move(Saved));
    else if (Status != TRegStatus::NotFound)
      Out_.UnreadableKeys.emplace(Place, Status);
  }

  TPlatform &Platform_;
  const TSpelling Spelling_;
  const TGoesOn &GoesOn_;
  bool IsLeft_ = false;
  TRoots Roots_;
  TSnapshot &Out_;
  TRegValueList Values_;
  std::map<TKeyPlace, std::set<std::u16string, TNameLess>, TKeyPlaceLess> Spellings_;
  std::set<TKeyPlace, TKeyPlaceLess> There_;
  std::set<TKeyPlace, TKeyPlaceLess> Missing_;
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

bool SameValues(const TSavedValues &Left, const TSavedValues &Right) {
  return std::ranges::equal(Left, Right, [](const auto &One, const auto &Other) {
    return EqualNoCase(One.first, Other.first) && One.second.SameData(Other.second);
  });
}

bool SameSecurity(std::span<const std::byte> Left, std::span<const std::byte> Right) {
  return std::ranges::equal(Left, Right) ||
         (std::ranges::equal(OwnerOf(Left), OwnerOf(Right)) &&
          std::ranges::equal(AccessListOf(Left), AccessListOf(Right)) && !OwnerOf(Left).empty());
}

bool SameInfo(const TRegKeyInfo &Left, const TRegKeyInfo &Right) {
  return Left.ClassName == Right.ClassName && Left.IsLink == Right.IsLink &&
         Left.Volatile == Right.Volatile && Left.Label == Right.Label &&
         SameSecurity(Left.Security, Right.Security);
}

bool HasKeyBelow(const TSavedKeys &Keys, const TKeyPlace &Place) {
  const auto First = Keys.lower_bound({Place.Root, Place.Path + u"\\"});
  return First != Keys.end() && IsAtOrBelow(First->first, Place);
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

TSnapshot TakeSnapshot(TPlatform &Platform, const TScope &Scope, TSpelling Spelling,
                       const TGoesOn &GoesOn) {
  TSnapshot Out;
  TSnapshotReader Reader(Platform, Spelling, GoesOn, Out);
  for (const TKeyPlace &Place : Scope.Trees)
    if (!Out.Scope.IsInTree(Place) && Reader.GoesOn())
      Reader.ReadTree(Place);
  for (const TKeyPlace &Place : Scope.Keys)
    if (Reader.GoesOn())
      Reader.ReadKey(Place);
  for (const std::u16string &Path : Scope.Files)
    if (!Path.empty() && Reader.GoesOn()) // older fixes recorded files without a name
      Reader.ReadFile(Path);
  return Out;
}

} // namespace hivesweep
