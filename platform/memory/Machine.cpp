#include "platform/memory/Machine.h"

#include <utility>

#include "platform/memory/MemoryFiles.h"

namespace hivesweep {

namespace {

constexpr std::pair<std::u16string_view, TDriveType> DriveNames[] = {
    {u"unknown", TDriveType::Unknown}, {u"removable", TDriveType::Removable},
    {u"fixed", TDriveType::Fixed},     {u"network", TDriveType::Network},
    {u"cdrom", TDriveType::CdRom},     {u"ramdisk", TDriveType::RamDisk},
};

// What is wrong with a line; empty when nothing is.
using TComplaint = std::u16string;

std::u16string Quoted(std::u16string_view Text) { return u"\"" + std::u16string(Text) + u"\""; }

bool IsAbsolute(std::u16string_view Path) {
  return Path.size() >= 3 && IsDriveRoot(Path.substr(0, 3));
}

std::u16string WithBackslash(std::u16string_view Path) {
  return std::u16string(Path) + (Path.ends_with(u'\\') ? u"" : u"\\");
}

std::u16string WithoutBackslash(std::u16string_view Path) {
  if (Path.size() > 3 && Path.ends_with(u'\\'))
    Path.remove_suffix(1);
  return std::u16string(Path);
}

constexpr std::pair<std::u16string_view, TSpecialFolder> FolderNames[] = {
    {u"Recent", TSpecialFolder::Recent},
    {u"SendTo", TSpecialFolder::SendTo},
    {u"StartMenu", TSpecialFolder::StartMenu},
    {u"Desktop", TSpecialFolder::Desktop},
    {u"CommonStartMenu", TSpecialFolder::CommonStartMenu},
    {u"CommonDesktop", TSpecialFolder::CommonDesktop},
};

// Where the machine keeps the folder of this name; null when there is no such name.
std::u16string *FindFolder(TMachine &Machine, std::u16string_view Name) {
  if (EqualNoCase(Name, u"WinDir"))
    return &Machine.WinDir;
  if (EqualNoCase(Name, u"TempDir"))
    return &Machine.TempDir;
  if (EqualNoCase(Name, u"AppData"))
    return &Machine.AppData;
  if (EqualNoCase(Name, u"CommonAppData"))
    return &Machine.CommonAppData;
  for (const auto &[Known, Folder] : FolderNames)
    if (EqualNoCase(Known, Name))
      return &Machine.Folders[Folder];
  return nullptr;
}

TComplaint SetMachine(TMachine &Machine, std::u16string_view Name, std::u16string_view Value) {
  if (EqualNoCase(Name, u"Wow64")) {
    if (Value != u"0" && Value != u"1")
      return u"Wow64 is 0 or 1, not " + Quoted(Value);
    Machine.Wow64 = Value == u"1";
    return {};
  }
  if (EqualNoCase(Name, u"UserKey")) {
    Machine.UserKey = Value;
    return {};
  }
  std::u16string *const Folder = FindFolder(Machine, Name);
  if (!Folder)
    return Quoted(Name) + u" is none of WinDir, TempDir, AppData, CommonAppData, Recent, SendTo, "
                          u"StartMenu, Desktop, CommonStartMenu, CommonDesktop, UserKey, Wow64";
  if (!IsAbsolute(Value))
    return u"a folder begins with a drive and a backslash, unlike " + Quoted(Value);
  *Folder = Folder == &Machine.TempDir ? WithBackslash(Value) : WithoutBackslash(Value);
  return {};
}

TComplaint SetDrive(TMachine &Machine, std::u16string_view Name, std::u16string_view Value) {
  const char16_t Letter = Name.empty() ? u'\0' : AsciiUpper(Name[0]);
  if (Name.size() != 1 || Letter < u'A' || Letter > u'Z')
    return u"a drive is one letter, not " + Quoted(Name);
  for (const auto &[Known, Type] : DriveNames) {
    if (EqualNoCase(Known, Value)) {
      Machine.Drives[Letter] = Type;
      return {};
    }
  }
  return Quoted(Value) + u" is none of fixed, removable, network, cdrom, ramdisk, unknown";
}

TComplaint SetVariable(TMachine &Machine, std::u16string_view Name, std::u16string_view Value) {
  Machine.Environment.insert_or_assign(std::u16string(Name), Value);
  return {};
}

TComplaint AddFile(TMachine &Machine, std::u16string_view Path) {
  if (!IsAbsolute(Path))
    return u"a path begins with a drive and a backslash, unlike " + Quoted(Path);
  if (HasImpossibleName(Path))
    return u"no file can have the name " + Quoted(Path);
  Machine.Files.emplace_back(Path);
  return {};
}

TComplaint AddShortcut(TMachine &Machine, std::u16string_view Path, std::u16string_view Target) {
  TComplaint Complaint = AddFile(Machine, Path);
  if (Complaint.empty())
    Machine.Shortcuts.insert_or_assign(LookupPath(Path), Target);
  return Complaint;
}

struct TSection {
  std::u16string_view Name;
  TComplaint (*Assign)(TMachine &, std::u16string_view Name, std::u16string_view Value);
};

constexpr TSection Sections[] = {
    {u"Machine", SetMachine},      {u"Drives", SetDrive},
    {u"Environment", SetVariable}, {u"Files", nullptr}, // its lines are paths, not assignments
    {u"Shortcuts", AddShortcut},
};

TComplaint ReadLine(TMachine &Machine, const TSection *&Section, std::u16string_view Line) {
  if (Line.starts_with(u'[')) {
    if (!Line.ends_with(u']'))
      return u"the closing bracket is missing";
    const std::u16string_view Name = Trim(Line.substr(1, Line.size() - 2));
    for (const TSection &Known : Sections) {
      if (EqualNoCase(Known.Name, Name)) {
        Section = &Known;
        if (Known.Assign == SetDrive)
          Machine.Drives.clear();
        return {};
      }
    }
    return Quoted(Name) +
           u" is none of the sections Machine, Drives, Environment, Files, Shortcuts";
  }
  if (!Section)
    return u"a line before the first section";
  if (!Section->Assign)
    return AddFile(Machine, Line);
  const std::size_t Equals = Line.find(u'=');
  if (Equals == std::u16string_view::npos || Equals == 0)
    return u"expected name=value";
  return Section->Assign(Machine, Trim(Line.substr(0, Equals)), Trim(Line.substr(Equals + 1)));
}

class TMemoryDrives final : public TDrives {
public:
  explicit TMemoryDrives(const TMachine &Machine) : Types_(Machine.Drives) {}

  TDriveType TypeOf(std::u16string_view Root) override {
    if (!IsDriveRoot(Root))
      return TDriveType::NoRoot;
    const auto Found = Types_.find(AsciiUpper(Root[0]));
    return Found == Types_.end() ? TDriveType::NoRoot : Found->second;
  }

private:
  std::map<char16_t, TDriveType> Types_;
};

class TMemoryFolders final : public TFolders {
public:
  explicit TMemoryFolders(const TMachine &Machine) : Machine_(Machine) {}

  std::u16string Special(TSpecialFolder Folder) override {
    switch (Folder) {
    case TSpecialFolder::AppData:
      return Machine_.AppData;
    case TSpecialFolder::CommonAppData:
      return Machine_.CommonAppData;
    default:
      break;
    }
    const auto Found = Machine_.Folders.find(Folder);
    return Found == Machine_.Folders.end() ? std::u16string() : Found->second;
  }
  std::u16string Windows() override { return Machine_.WinDir; }
  std::u16string Temp() override { return Machine_.TempDir; }
  std::u16string Program() override {
    return Machine_.WinDir.substr(0, 3) + u"Program Files\\Hivesweep\\";
  }

private:
  TMachine Machine_;
};

class TMemorySystem final : public TSystem {
public:
  explicit TMemorySystem(const TMachine &Machine)
      : Wow64_(Machine.Wow64), UserKey_(Machine.UserKey), Variables_(Machine.Environment) {}

  bool IsWow64() override { return Wow64_; }
  std::optional<std::u16string> Environment(std::u16string_view Name) override {
    const auto Found = Variables_.find(Name);
    if (Found == Variables_.end())
      return std::nullopt;
    return Found->second;
  }
  std::u16string UserKey() override { return UserKey_; }

private:
  bool Wow64_;
  std::u16string UserKey_;
  std::map<std::u16string, std::u16string, TNameLess> Variables_;
};

// The described machine's shortcuts; what is to be opened, the running system opens.
class TMemoryShell final : public TShell {
public:
  TMemoryShell(const TMachine &Machine, std::unique_ptr<TShell> Running)
      : Running_(std::move(Running)), Shortcuts_(Machine.Shortcuts) {}

  bool Open(std::u16string_view Target, std::u16string_view Parameters) override {
    return Running_->Open(Target, Parameters);
  }
  std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                  std::u16string_view Parameters) override {
    return Running_->Start(Target, Parameters);
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view LinkPath) override {
    const auto Found = Shortcuts_.find(LookupPath(LinkPath));
    if (Found == Shortcuts_.end())
      return std::nullopt;
    return Found->second;
  }

private:
  std::unique_ptr<TShell> Running_;
  std::map<std::u16string, std::u16string, TNameLess> Shortcuts_;
};

} // namespace

std::variant<TMachine, TTextError> ParseMachine(std::u16string_view Text) {
  TMachine Machine;
  const TSection *Section = nullptr;
  std::size_t Number = 0;
  for (const std::u16string_view Line : SplitLines(Text)) {
    ++Number;
    const std::u16string_view Content = Trim(Line);
    if (Content.empty() || Content.starts_with(u';'))
      continue;
    if (TComplaint Complaint = ReadLine(Machine, Section, Content); !Complaint.empty())
      return TTextError{Number, std::move(Complaint)};
  }
  return Machine;
}

TPlatform MakeMemoryPlatform(std::unique_ptr<TRegistryHost> Registry, const TMachine &Machine,
                             TFaults *Faults) {
  TPlatform Platform = MakeLocalServices();
  Platform.Registry = std::move(Registry);
  Platform.Files = std::make_unique<TMemoryFiles>(Machine, Faults);
  Platform.Drives = std::make_unique<TMemoryDrives>(Machine);
  Platform.Folders = std::make_unique<TMemoryFolders>(Machine);
  Platform.System = std::make_unique<TMemorySystem>(Machine);
  Platform.Shell = std::make_unique<TMemoryShell>(Machine, std::move(Platform.Shell));
  return Platform;
}

} // namespace hivesweep
