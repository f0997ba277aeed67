#include "platform/memory/MemoryFiles.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

namespace {

// The parts of the system folder that 32-bit programs see as they are.
constexpr std::u16string_view SharedParts[] = {u"catroot",     u"catroot2", u"drivers\\etc",
                                               u"driverstore", u"logfiles", u"spool"};

// Path is Folder or lies below it.
bool IsWithin(std::u16string_view Path, std::u16string_view Folder) {
  return EqualNoCase(Path.substr(0, Folder.size()), Folder) &&
         (Path.size() == Folder.size() || Path[Folder.size()] == u'\\');
}

bool HasDrive(std::u16string_view Path) {
  return Path.size() >= 3 && IsDriveRoot(Path.substr(0, 3));
}

// Of a path in lookup form that is no drive's root: that root keeps its backslash.
std::u16string_view ParentOf(std::u16string_view Path) {
  const std::size_t Last = Path.rfind(u'\\');
  return Path.substr(0, Last == 2 ? 3 : Last);
}

} // namespace

TMemoryFiles::TMemoryFiles(const TMachine &Machine, TFaults *Faults)
    : Drives_(Machine.Drives), WinDir_(LookupPath(Machine.WinDir)), Redirecting_(false),
      Faults_(Faults) {
  for (const auto &[Letter, Type] : Drives_)
    Entries_[std::u16string{Letter, u':', u'\\'}] = {};
  for (const std::u16string &Folder : {Machine.WinDir, Machine.TempDir, Machine.AppData,
                                       Machine.CommonAppData, Machine.WinDir + u"\\System32"})
    if (HasDrive(Folder))
      Add(Folder, TPathState::Folder);
  for (const auto &[Folder, Path] : Machine.Folders)
    Add(Path, TPathState::Folder);
  if (Machine.Wow64)
    Add(Machine.WinDir + u"\\SysWOW64", TPathState::Folder);
  for (const std::u16string &File : Machine.Files)
    Add(File, File.ends_with(u'\\') ? TPathState::Folder : TPathState::File);
  for (const auto &[Path, Target] : Machine.Shortcuts)
    Add(Path, TPathState::File);
  for (const std::u16string &Path : Machine.Links)
    if (const auto Found = Entries_.find(LookupPath(Path)); Found != Entries_.end())
      Found->second.IsLink = true;
  for (const std::u16string &Path : Machine.Unreadable)
    Add(Path, TPathState::Unknown);
  // Only now: what was listed above stands in the folder that it names.
  Redirecting_ = Machine.Wow64;
}

TPathState TMemoryFiles::Look(std::u16string_view Path) {
  return Faults_ && Faults_->Next() ? TPathState::Unknown : StateOf(Path);
}

TPathState TMemoryFiles::StateOf(std::u16string_view Path) const {
  if (!HasDrive(Path))
    return TPathState::Unknown;
  if (HasImpossibleName(Path))
    return TPathState::Missing;
  const std::u16string Whole = Resolve(Path);
  // A folder that can't be looked into hides all that is below it; below a file
  // there is nothing.
  for (std::size_t End = Whole.find(u'\\', 3); End != std::u16string::npos;
       End = Whole.find(u'\\', End + 1)) {
    const auto Parent = Entries_.find(std::u16string_view(Whole).substr(0, End));
    if (Parent == Entries_.end())
      return TPathState::Missing;
    if (Parent->second.State == TPathState::Unknown)
      return TPathState::Unknown;
  }
  const auto Found = Entries_.find(Whole);
  return Found == Entries_.end() ? TPathState::Missing : Found->second.State;
}

bool TMemoryFiles::List(std::u16string_view Folder,
                        const std::function<bool(const TFolderEntry &Entry)> &Take) {
  if (Look(Folder) != TPathState::Folder)
    return false;
  std::u16string Front = Resolve(Folder);
  if (!Front.ends_with(u'\\'))
    Front.push_back(u'\\');
  for (auto Entry = Entries_.lower_bound(Front); Entry != Entries_.end(); ++Entry) {
    const std::u16string_view Path = Entry->first;
    if (!EqualNoCase(Path.substr(0, Front.size()), Front))
      break;
    const bool Direct = Path.size() > Front.size() && !Contains(Path.substr(Front.size()), u'\\');
    if (Direct && !Take({Entry->second.Name, Entry->second.State == TPathState::Folder,
                         Entry->second.IsLink}))
      return false;
  }
  return true;
}

bool TMemoryFiles::CreateFolder(std::u16string_view Path) {
  const std::u16string Whole = LookupPath(Path);
  if (!HasDrive(Whole) || HasImpossibleName(Whole) || Look(Whole) != TPathState::Missing ||
      Look(ParentOf(Whole)) != TPathState::Folder)
    return false;
  Add(Whole, TPathState::Folder);
  return true;
}

TFileStatus TMemoryFiles::FindFile(std::u16string_view Path, TEntries::iterator &Found) {
  if (Faults_ && Faults_->Next())
    return TFileStatus::Failed;
  switch (StateOf(Path)) {
  case TPathState::File:
    Found = Entries_.find(Resolve(Path));
    return TFileStatus::Ok;
  case TPathState::Missing:
    return TFileStatus::NotFound;
  case TPathState::Folder:
    return TFileStatus::Failed;
  case TPathState::Unknown:
    break;
  }
  return HasDrive(Path) ? TFileStatus::Denied : TFileStatus::Failed;
}

TFileStatus TMemoryFiles::ReadContent(std::u16string_view Path, TFileContent &Out) {
  TEntries::iterator Found;
  const TFileStatus Status = FindFile(Path, Found);
  Out = Status == TFileStatus::Ok ? Found->second.Content : TFileContent();
  return Status;
}

TFileStatus TMemoryFiles::WriteContent(std::u16string_view Path, const TFileContent &Content) {
  TEntries::iterator Found;
  const TFileStatus Status = FindFile(Path, Found);
  if (Status == TFileStatus::Ok)
    Found->second.Content = Content;
  if (Status != TFileStatus::NotFound)
    return Status;
  if (HasImpossibleName(Path))
    return TFileStatus::Failed;
  if (StateOf(ParentOf(LookupPath(Path))) != TPathState::Folder)
    return TFileStatus::NotFound;
  Add(Path, TPathState::File).Content = Content;
  return TFileStatus::Ok;
}

TFileStatus TMemoryFiles::RemoveFile(std::u16string_view Path) {
  TEntries::iterator Found;
  const TFileStatus Status = FindFile(Path, Found);
  if (Status != TFileStatus::Ok)
    return Status;
  constexpr std::uint32_t ReadOnly = 1;
  if ((Found->second.Content.Attributes & ReadOnly) != 0)
    return TFileStatus::Denied;
  Entries_.erase(Found);
  return TFileStatus::Ok;
}

void *TMemoryFiles::DisableRedirection() {
  // What is saved is whether there was anything to switch off.
  void *Saved = Redirecting_ ? this : nullptr;
  Redirecting_ = false;
  return Saved;
}

void TMemoryFiles::RevertRedirection(void *Saved) { Redirecting_ = Saved != nullptr; }

std::u16string TMemoryFiles::Resolve(std::u16string_view Path) const {
  std::u16string Whole = LookupPath(Path);
  if (!Redirecting_)
    return Whole;
  const std::u16string System32 = WinDir_ + u"\\System32";
  const std::u16string Native = WinDir_ + u"\\Sysnative";
  if (IsWithin(Whole, Native))
    return System32 + Whole.substr(Native.size());
  if (!IsWithin(Whole, System32))
    return Whole;
  for (const std::u16string_view Part : SharedParts)
    if (IsWithin(Whole, System32 + u"\\" + std::u16string(Part)))
      return Whole;
  return WinDir_ + u"\\SysWOW64" + Whole.substr(System32.size());
}

TMemoryFiles::TEntry &TMemoryFiles::Add(std::u16string_view Path, TPathState State) {
  const std::u16string Whole = Resolve(Path);
  // Each part of the path, the parents as the folders that they must be.
  for (std::size_t From = 3; From < Whole.size();) {
    const std::size_t End = std::min(Whole.find(u'\\', From), Whole.size());
    TEntry &Entry = Entries_[Whole.substr(0, End)];
    if (Entry.Name.empty())
      Entry.Name = Whole.substr(From, End - From);
    if (End == Whole.size())
      Entry.State = State;
    From = End + 1;
  }
  return Entries_[Whole];
}

} // namespace hivesweep
