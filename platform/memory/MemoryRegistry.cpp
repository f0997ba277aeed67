#include "platform/memory/MemoryRegistry.h"

#include <algorithm>
#include <array>
#include <list>
#include <map>
#include <string>
#include <utility>

#include "platform/Text.h"
#include "platform/memory/RegistryText.h"

namespace hivesweep {

namespace {

struct TNode;
using TNodePtr = std::shared_ptr<TNode>;

struct TStoredValue {
  std::u16string Name;
  TRegType Type = TRegType::None;
  std::vector<std::byte> Bytes;
};

// One key. Handles share it, so that a handle to a deleted key can tell so.
struct TNode {
  TNode() = default;
  TNode(const TNode &) = delete;
  TNode &operator=(const TNode &) = delete;

  // Frees the keys below one after the other. If each freed its own, a tree of many levels
  // would need more stack than there is.
  ~TNode() {
    std::vector<TNodePtr> Waiting;
    const auto TakeSubkeys = [&](TNode &Node) {
      for (auto &[Name, Subkey] : Node.Subkeys)
        Waiting.push_back(std::move(Subkey));
      Node.Subkeys.clear();
    };
    TakeSubkeys(*this);
    while (!Waiting.empty()) {
      const TNodePtr Node = std::move(Waiting.back());
      Waiting.pop_back();
      if (Node.use_count() == 1) // else a handle frees it later
        TakeSubkeys(*Node);
    }
  }

  bool Gone = false;
  bool Denied = false;
  bool SpellingImplied = false; // no text has named it yet, only a path through it
  TRegKeyInfo Info;
  std::map<std::u16string, TNodePtr, TNameLess> Subkeys;
  std::list<TStoredValue> Values; // in the order of their making
  std::map<std::u16string, std::list<TStoredValue>::iterator, TNameLess> ValueIndex;

  const TStoredValue *FindValue(std::u16string_view Name) const {
    const auto Found = ValueIndex.find(Name);
    return Found == ValueIndex.end() ? nullptr : &*Found->second;
  }
  TNodePtr FindSubkey(std::u16string_view Name) const {
    const auto Found = Subkeys.find(Name);
    return Found == Subkeys.end() ? nullptr : Found->second;
  }
};

// The first part of a path and what follows it.
std::pair<std::u16string_view, std::u16string_view> SplitFirst(std::u16string_view Path) {
  const std::size_t End = Path.find(u'\\');
  if (End == std::u16string_view::npos)
    return {Path, {}};
  return {Path.substr(0, End), Path.substr(End + 1)};
}

// The last part of a path and what stands before it.
std::pair<std::u16string_view, std::u16string_view> SplitLast(std::u16string_view Path) {
  const std::size_t Break = Path.rfind(u'\\');
  if (Break == std::u16string_view::npos)
    return {{}, Path};
  return {Path.substr(0, Break), Path.substr(Break + 1)};
}

// How much of a path is there: the last key of it and what follows that one. A link
// is passed by none.
struct TReach {
  TNodePtr Node;
  std::u16string_view Rest;
};

TReach ReachOf(TNodePtr Node, std::u16string_view Path) {
  while (!Path.empty() && !Node->Info.IsLink) {
    const auto [Name, Rest] = SplitFirst(Path);
    TNodePtr Below = Node->FindSubkey(Name);
    if (!Below)
      break;
    Node = std::move(Below);
    Path = Rest;
  }
  return {std::move(Node), Path};
}

TNodePtr FindNode(const TNodePtr &Base, std::u16string_view Path) {
  TReach Reach = ReachOf(Base, Path);
  const bool IsThere = Reach.Rest.empty() && !Reach.Node->Info.IsLink;
  return IsThere || Path.empty() ? std::move(Reach.Node) : nullptr;
}

// The same, but a link at the path's end is found.
TNodePtr FindItself(const TNodePtr &Base, std::u16string_view Path) {
  if (Path.empty())
    return Base;
  const auto [Front, Name] = SplitLast(Path);
  const TNodePtr Parent = FindNode(Base, Front);
  return Parent ? Parent->FindSubkey(Name) : nullptr;
}

// Makes what is missing of the path. A name that was only implied so far takes
// the spelling of a text that names it.
TNodePtr MakeNode(TNodePtr Node, std::u16string_view Path, bool Implied) {
  while (!Path.empty()) {
    const auto [Name, Rest] = SplitFirst(Path);
    auto Found = Node->Subkeys.find(Name);
    if (Found == Node->Subkeys.end()) {
      Found = Node->Subkeys.emplace(Name, std::make_shared<TNode>()).first;
      Found->second->SpellingImplied = Implied;
    } else if (Found->second->SpellingImplied && !Implied) {
      Found->second->SpellingImplied = false;
      auto Handle = Node->Subkeys.extract(Found);
      Handle.key() = Name;
      Found = Node->Subkeys.insert(std::move(Handle)).position;
    }
    Node = Found->second;
    Path = Rest;
  }
  return Node;
}

void MarkGone(TNode &Top) {
  std::vector<TNode *> Waiting = {&Top};
  while (!Waiting.empty()) {
    TNode *Node = Waiting.back();
    Waiting.pop_back();
    Node->Gone = true;
    for (const auto &[Name, Subkey] : Node->Subkeys)
      Waiting.push_back(Subkey.get());
  }
}

TRegStatus DeleteNode(const TNodePtr &Base, std::u16string_view Path) {
  const auto [Front, Name] = SplitLast(Path);
  const TNodePtr Parent = FindNode(Base, Front);
  if (!Parent)
    return TRegStatus::NotFound;
  const auto Found = Parent->Subkeys.find(Name);
  if (Found == Parent->Subkeys.end())
    return TRegStatus::NotFound;
  if (Found->second->Denied)
    return TRegStatus::Denied;
  MarkGone(*Found->second);
  Parent->Subkeys.erase(Found);
  return TRegStatus::Ok;
}

void StoreValue(TNode &Node, std::u16string_view Name, TRegType Type,
                std::span<const std::byte> Bytes) {
  const auto Found = Node.ValueIndex.find(Name);
  if (Found != Node.ValueIndex.end()) {
    Found->second->Type = Type;
    Found->second->Bytes.assign(Bytes.begin(), Bytes.end());
    return;
  }
  Node.Values.push_back({std::u16string(Name), Type, {Bytes.begin(), Bytes.end()}});
  Node.ValueIndex.emplace(Name, std::prev(Node.Values.end()));
}

TRegStatus DropValue(TNode &Node, std::u16string_view Name) {
  const auto Found = Node.ValueIndex.find(Name);
  if (Found == Node.ValueIndex.end())
    return TRegStatus::NotFound;
  Node.Values.erase(Found->second);
  Node.ValueIndex.erase(Found);
  return TRegStatus::Ok;
}

bool Addressable(std::u16string_view Name) { return !Contains(Name, u'\0'); }

// An open key: one node, or for the classes root the user's and the machine's,
// the first over the second.
class TMemoryRegKey final : public TRegKey {
public:
  TMemoryRegKey(std::vector<TNodePtr> Layers, TRegAccess Access, TFaults *Faults,
                const bool &RefusesLabels, bool IsClassesRoot)
      : Layers_(std::move(Layers)), Access_(Access), Faults_(Faults), RefusesLabels_(RefusesLabels),
        IsClassesRoot_(IsClassesRoot) {}

  TRegOpened Open(std::u16string_view Path, TRegAccess Access) override {
    return OpenBy(FindNode, Path, Access);
  }

  TRegOpened OpenItself(std::u16string_view Path, TRegAccess Access) override {
    return OpenBy(FindItself, Path, Access);
  }

  TRegOpened Create(std::u16string_view Path, const TRegKeyInfo &Info) override {
    if (!IsNewKeyPath(Path))
      return {};
    TRegOpened Opened = OpenBy(Info.IsLink ? FindItself : FindNode, Path, TRegAccess::Full);
    if (Opened.Status == TRegStatus::NotFound && !Layers_.front()->Gone)
      Opened = Make(Path, Info);
    return Opened;
  }

  TRegStatus ReadInfo(TRegKeyInfo &Out) override {
    Out = {};
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    Out = Layers_.front()->Info;
    return TRegStatus::Ok;
  }

  TRegStatus TryLikeness(const TRegKeyInfo &Info) override {
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    const bool CanBeMade =
        Info.Volatile != TRegVolatile::NotTold && (Info.Label.empty() || !RefusesLabels_);
    return CanBeMade ? TRegStatus::Ok : TRegStatus::Failed;
  }

  TRegStatus Counts(TRegCounts &Out) override {
    Out = {};
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    ForEachSubkey([&](std::u16string_view) { ++Out.Subkeys; });
    ForEachValue([&](const TStoredValue &) { ++Out.Values; });
    return TRegStatus::Ok;
  }

  TRegStatus SubkeyNames(std::vector<std::u16string> &Out) override {
    Out.clear();
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    ForEachSubkey([&](std::u16string_view Name) { Out.emplace_back(Name); });
    return TRegStatus::Ok;
  }

  TRegStatus Values(TRegValueList &Out) override {
    Out.Clear();
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    ForEachValue([&](const TStoredValue &Value) { Out.Add(Value.Name, Value.Type, Value.Bytes); });
    return TRegStatus::Ok;
  }

  TRegStatus Read(std::u16string_view Name, TRegValue &Out) override {
    Out.Assign(TRegType::None, {});
    if (!Addressable(Name))
      return TRegStatus::Failed;
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    for (const TNodePtr &Layer : Layers_) {
      if (const TStoredValue *Value = Layer->FindValue(Name)) {
        Out.Assign(Value->Type, Value->Bytes);
        return TRegStatus::Ok;
      }
    }
    return TRegStatus::NotFound;
  }

  TRegStatus SetValue(std::u16string_view Name, TRegType Type,
                      std::span<const std::byte> Bytes) override {
    if (!Addressable(Name) || Name.size() > LongestValueName)
      return TRegStatus::Failed;
    if (const TRegStatus Status = CheckToWrite(); Status != TRegStatus::Ok)
      return Status;
    StoreValue(*Layers_.front(), Name, Type, Bytes);
    return TRegStatus::Ok;
  }

  TRegStatus DeleteValue(std::u16string_view Name) override {
    if (!Addressable(Name))
      return TRegStatus::Failed;
    if (const TRegStatus Status = CheckToWrite(); Status != TRegStatus::Ok)
      return Status;
    return FirstLayer([&](const TNodePtr &Layer) { return DropValue(*Layer, Name); });
  }

  TRegStatus DeleteTree(std::u16string_view Path) override {
    if (Path.empty() || !Addressable(Path))
      return TRegStatus::Failed;
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    return FirstLayer([&](const TNodePtr &Layer) { return DeleteNode(Layer, Path); });
  }

private:
  bool Broken() { return Faults_ && Faults_->Next(); }

  TRegStatus Check() {
    if (Broken())
      return TRegStatus::Failed;
    return Layers_.front()->Gone ? TRegStatus::NotFound : TRegStatus::Ok;
  }

  TRegStatus CheckToWrite() {
    if (const TRegStatus Status = Check(); Status != TRegStatus::Ok)
      return Status;
    return Access_ == TRegAccess::Full ? TRegStatus::Ok : TRegStatus::Denied;
  }

  std::unique_ptr<TMemoryRegKey> KeyOf(std::vector<TNodePtr> Layers, TRegAccess Access,
                                       bool IsClassesRoot) {
    return std::make_unique<TMemoryRegKey>(std::move(Layers), Access, Faults_, RefusesLabels_,
                                           IsClassesRoot);
  }

  using TFind = TNodePtr (*)(const TNodePtr &Base, std::u16string_view Path);

  TRegOpened OpenBy(TFind Find, std::u16string_view Path, TRegAccess Access) {
    if (!Addressable(Path) || Broken())
      return {TRegStatus::Failed, nullptr};
    std::vector<TNodePtr> Found;
    for (const TNodePtr &Layer : Layers_)
      if (TNodePtr Node = Find(Layer, Path); Node && !Node->Gone)
        Found.push_back(std::move(Node));
    if (Found.empty())
      return {TRegStatus::NotFound, nullptr};
    if (Found.front()->Denied)
      return {TRegStatus::Denied, nullptr};
    return {TRegStatus::Ok, KeyOf(std::move(Found), Access, IsClassesRoot_ && Path.empty())};
  }

  TRegOpened Make(std::u16string_view Path, const TRegKeyInfo &Info) {
    const TReach Home = HomeOf(Path);
    if (Home.Node->Info.IsLink)
      return {TRegStatus::NotFound, nullptr};
    if (Home.Node->Denied)
      return {TRegStatus::Denied, nullptr};
    if (Home.Node->Info.Volatile == TRegVolatile::Yes && Info.Volatile != TRegVolatile::Yes)
      return {TRegStatus::Failed, nullptr}; // it would outlive the key that it is in
    const TNodePtr Made = MakeNode(Home.Node, Home.Rest, false);
    Made->Info = Info;
    if (RefusesLabels_)
      Made->Info.Label.clear();
    return {TRegStatus::Ok, KeyOf({Made}, TRegAccess::Full, false), true};
  }

  // Where a missing key is made: in the layer that has most of its path, the user's
  // before the machine's. What has nothing of it below HKEY_CLASSES_ROOT itself goes to
  // the machine's.
  TReach HomeOf(std::u16string_view Path) const {
    TReach Home;
    for (const TNodePtr &Layer : Layers_) {
      if (Layer->Gone)
        continue;
      TReach Reach = ReachOf(Layer, Path);
      const bool HasNothing = Home.Rest.size() == Path.size();
      if (!Home.Node || Reach.Rest.size() < Home.Rest.size() || (HasNothing && IsClassesRoot_))
        Home = std::move(Reach);
    }
    return Home;
  }

  // Tries the layers in turn until one has what is asked for.
  template <typename TTry> TRegStatus FirstLayer(TTry Try) {
    for (const TNodePtr &Layer : Layers_)
      if (const TRegStatus Status = Try(Layer); Status != TRegStatus::NotFound)
        return Status;
    return TRegStatus::NotFound;
  }

  template <typename TVisit> void ForEachSubkey(TVisit Visit) const {
    if (Layers_.size() == 1) {
      for (const auto &[Name, Node] : Layers_[0]->Subkeys)
        Visit(Name);
      return;
    }
    std::map<std::u16string_view, int, TNameLess> Names;
    for (const TNodePtr &Layer : Layers_)
      for (const auto &[Name, Node] : Layer->Subkeys)
        Names.emplace(Name, 0);
    for (const auto &[Name, Unused] : Names)
      Visit(Name);
  }

  template <typename TVisit> void ForEachValue(TVisit Visit) const {
    for (std::size_t Index = 0; Index < Layers_.size(); ++Index)
      for (const TStoredValue &Value : Layers_[Index]->Values)
        if (Index == 0 || !Layers_[0]->FindValue(Value.Name))
          Visit(Value);
  }

  std::vector<TNodePtr> Layers_;
  TRegAccess Access_;
  TFaults *Faults_;
  const bool &RefusesLabels_;
  bool IsClassesRoot_;
};

// Takes a text in without touching anything: it is read for its faults alone.
class TCheckReader final : public TRegistryTextReader {
  void OnKey(std::u16string_view) override {}
  void OnDeleteKey(std::u16string_view) override {}
  void OnValue(std::u16string_view, TRegType, std::span<const std::byte>) override {}
  void OnDeleteValue(std::u16string_view) override {}
};

constexpr std::u16string_view ClassesPath = u"Software\\Classes";

} // namespace

struct TMemoryRegistry::TTrees {
  std::map<std::u16string, TNodePtr, TNameLess> Roots; // by their names
  bool RefusesLabels = false;

  TNodePtr Root(std::u16string_view Name) {
    TNodePtr &Node = Roots[std::u16string(Name)];
    if (!Node)
      Node = std::make_shared<TNode>();
    return Node;
  }

  // Where a text that names this key puts it.
  TNodePtr Home(std::u16string_view RootName) {
    if (!EqualNoCase(RootName, RegRootName(TRegRoot::ClassesRoot)))
      return Root(RootName);
    return MakeNode(Root(RegRootName(TRegRoot::LocalMachine)), ClassesPath, true);
  }
};

namespace {

template <typename TTreesType> class TLoadReader final : public TRegistryTextReader {
public:
  explicit TLoadReader(TTreesType &Trees) : Trees_(Trees) {}

  void OnKey(std::u16string_view KeyPath) override {
    const auto [Root, Path] = SplitFirst(KeyPath);
    Current_ = MakeNode(Trees_.Home(Root), Path, false);
  }
  void OnDeleteKey(std::u16string_view KeyPath) override {
    const auto [Root, Path] = SplitFirst(KeyPath);
    DeleteNode(Trees_.Home(Root), Path);
  }
  void OnValue(std::u16string_view Name, TRegType Type, std::span<const std::byte> Bytes) override {
    StoreValue(*Current_, Name, Type, Bytes);
  }
  void OnDeleteValue(std::u16string_view Name) override { DropValue(*Current_, Name); }

private:
  TTreesType &Trees_;
  TNodePtr Current_;
};

} // namespace

TMemoryRegistry::TMemoryRegistry(TFaults *Faults)
    : Trees_(std::make_unique<TTrees>()), Faults_(Faults) {}

TMemoryRegistry::~TMemoryRegistry() = default;

std::optional<TTextError> TMemoryRegistry::LoadText(std::string_view Bytes) {
  TCheckReader Check;
  if (auto Error = ReadRegistryText(Bytes, Check))
    return Error;
  TLoadReader Load(*Trees_);
  return ReadRegistryText(Bytes, Load);
}

bool TMemoryRegistry::Deny(std::u16string_view KeyPath) {
  const auto [Root, Path] = SplitFirst(KeyPath);
  const TNodePtr Node = FindNode(Trees_->Home(Root), Path);
  if (Node)
    Node->Denied = true;
  return Node != nullptr;
}

bool TMemoryRegistry::SetInfo(std::u16string_view KeyPath, const TRegKeyInfo &Info) {
  const auto [Root, Path] = SplitFirst(KeyPath);
  const TNodePtr Node = FindNode(Trees_->Home(Root), Path);
  if (Node)
    Node->Info = Info;
  return Node != nullptr;
}

void TMemoryRegistry::RefuseLabels() { Trees_->RefusesLabels = true; }

TRegOpened TMemoryRegistry::Open(TRegRoot Root, std::u16string_view Path, TRegAccess Access) {
  std::vector<TNodePtr> Layers;
  const bool IsClassesRoot = Root == TRegRoot::ClassesRoot;
  if (IsClassesRoot) {
    for (const TRegRoot Owner : {TRegRoot::CurrentUser, TRegRoot::LocalMachine})
      if (TNodePtr Classes = FindNode(Trees_->Root(RegRootName(Owner)), ClassesPath))
        Layers.push_back(std::move(Classes));
  } else {
    Layers.push_back(Trees_->Root(RegRootName(Root)));
  }
  if (Layers.empty())
    return {TRegStatus::NotFound, nullptr};
  return TMemoryRegKey(std::move(Layers), Access, Faults_, Trees_->RefusesLabels, IsClassesRoot)
      .Open(Path, Access);
}

} // namespace hivesweep
