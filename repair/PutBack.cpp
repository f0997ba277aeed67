// Makes a part of the registry what a snapshot says.
#include <algorithm>
#include <memory>
#include <utility>

#include "repair/FileStatus.h"
#include "repair/RegistryRoots.h"
#include "repair/Snapshot.h"

namespace hivesweep {

namespace {

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
      if (!Present_.Knows(Place) || IsBelowUnmade(Place))
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
    return Wanted_.Keys.contains(Place) || HasKeyBelow(Wanted_.Keys, Place);
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
    if (Present && SameValues(*Present, Wanted.Values))
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
      const auto Present = Present_.Files.find(Path);
      const auto Wanted = Wanted_.Files.find(Path);
      const auto Unreadable = Present_.UnreadableFiles.find(Path);
      if (Unreadable != Present_.UnreadableFiles.end()) {
        if (Wanted != Wanted_.Files.end())
          Note(RegStatusOf(Unreadable->second), Path, u"");
        continue;
      }
      if (Wanted == Wanted_.Files.end()) {
        if (Present != Present_.Files.end() && !Wanted_.UnreadableFiles.contains(Path))
          Note(RegStatusOf(Files.RemoveFile(Path)), Path, u"");
      } else if (Present == Present_.Files.end() || Present->second.Bytes != Wanted->second.Bytes) {
        if (const std::size_t Break = Path.rfind(u'\\'); Break != std::u16string::npos)
          CreateFolderPath(Files, Path.substr(0, Break));
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

// Finds where two snapshots differ.
class TComparing {
public:
  TComparing(const TSnapshot &Now, const TSnapshot &Wanted, std::span<const TPutFailure> Failures)
      : Now_(Now), Wanted_(Wanted) {
    for (const TPutFailure &Failure : Failures)
      Known_.emplace(std::pair(Failure.Path, Failure.Value), Failure.Status);
  }

  std::vector<TPutFailure> Run() {
    for (const auto &[Place, Key] : Wanted_.Keys) {
      const auto Found = Now_.Keys.find(Place);
      if (Found == Now_.Keys.end())
        Tell(PathOf(Place));
      else
        CompareKey(PathOf(Place), Found->second, Key);
    }
    for (const auto &[Place, Key] : Now_.Keys)
      if (!Wanted_.Keys.contains(Place) && Wanted_.Knows(Place))
        Tell(PathOf(Place));
    for (const std::u16string &Path : Now_.Scope.Files)
      CompareFile(Path);
    return std::move(Out_);
  }

private:
  void CompareKey(const std::u16string &Path, const TSavedKey &Now, const TSavedKey &Wanted) {
    for (const auto &[Name, Value] : Wanted.Values)
      if (const auto Found = Now.Values.find(Name);
          Found == Now.Values.end() || !Found->second.SameData(Value))
        Tell(Path, Name);
    for (const auto &[Name, Value] : Now.Values)
      if (!Wanted.Values.contains(Name))
        Tell(Path, Name);
    if (Now.Info.ClassName != Wanted.Info.ClassName)
      Tell(Path, u"", TPutPart::ClassName);
    if (Now.Info.Label != Wanted.Info.Label ||
        !SameSecurity(Now.Info.Security, Wanted.Info.Security))
      Tell(Path, u"", TPutPart::Security);
  }

  void CompareFile(const std::u16string &Path) {
    const auto Now = Now_.Files.find(Path);
    const auto Wanted = Wanted_.Files.find(Path);
    const bool IsWanted = Wanted != Wanted_.Files.end();
    if (IsWanted != (Now != Now_.Files.end())
            ? IsWanted || !Wanted_.UnreadableFiles.contains(Path)
            : IsWanted && Now->second.Bytes != Wanted->second.Bytes)
      Tell(Path);
  }

  void Tell(const std::u16string &Path, const std::u16string &Value = {},
            TPutPart Part = TPutPart::Content) {
    auto Known = Known_.find({Path, Value});
    if (Known == Known_.end())
      Known = Known_.find({Path, {}});
    Out_.push_back({Path, Value, Known == Known_.end() ? TRegStatus::Failed : Known->second, Part});
  }

  const TSnapshot &Now_;
  const TSnapshot &Wanted_;
  std::map<std::pair<std::u16string, std::u16string>, TRegStatus> Known_;
  std::vector<TPutFailure> Out_;
};

} // namespace

std::vector<TPutFailure> Differences(const TSnapshot &Now, const TSnapshot &Wanted,
                                     std::span<const TPutFailure> Failures) {
  return TComparing(Now, Wanted, Failures).Run();
}

std::vector<TPutFailure> PutBack(TPlatform &Platform, const TSnapshot &Present,
                                 const TSnapshot &Wanted) {
  return TPuttingBack(Platform, Present, Wanted).Run();
}

} // namespace hivesweep
