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

TComplaint SetMachine(TMachine &Machine, std::u16string_view Name, std::u16string_view Value) {
  if (EqualNoCase(Name, u"Wow64")) {
    if (Value != u"0" && Value != u"1")
      return u"Wow64 is 0 or 1, not " + Quoted(Value);
    Machine.Wow64 = Value == u"1";
    return {};
  }
  const bool IsTemp = EqualNoCase(Name, u"TempDir");
  std::u16string *Folder = EqualNoCase(Name, u"WinDir")          ? &Machine.WinDir
                           : IsTemp                              ? &Machine.TempDir
                           : EqualNoCase(Name, u"AppData")       ? &Machine.AppData
                           : EqualNoCase(Name, u"CommonAppData") ? &Machine.CommonAppData
                                                                 : nullptr;
  if (!Folder)
    return Quoted(Name) + u" is none of WinDir, TempDir, AppData, CommonAppData, Wow64";
  if (!IsAbsolute(Value))
    return u"a folder begins with a drive and a backslash, unlike " + Quoted(Value);
  *Folder = IsTemp ? WithBackslash(Value) : WithoutBackslash(Value);
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

struct TSection {
  std::u16string_view Name;
  TComplaint (*Assign)(TMachine &, std::u16string_view Name, std::u16string_view Value);
};

constexpr TSection Sections[] = {
    {u"Machine", SetMachine},
    {u"Drives", SetDrive},
    {u"Environment", SetVariable},
    {u"Files", nullptr}, // its lines are paths, not assignments
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
    return Quoted(Name) + u" is none of the sections Machine, Drives, Environment, Files";
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
    }
    return {};
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
      : Wow64_(Machine.Wow64), Variables_(Machine.Environment) {}

  bool IsWow64() override { return Wow64_; }
  std::optional<std::u16string> Environment(std::u16string_view Name) override {
    const auto Found = Variables_.find(Name);
    if (Found == Variables_.end())
      return std::nullopt;
    return Found->second;
  }

private:
  bool Wow64_;
  std::map<std::u16string, std::u16string, TNameLess> Variables_;
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
  return Platform;
}

} // namespace hivesweep
