#include "scanners/SoftwareScanners.h"

#include <set>
#include <utility>

#include "engine/ExportLines.h"
#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/KeyScan.h"
#include "scanners/LocalTargets.h"

namespace hivesweep {

namespace {

constexpr TRegRoot Machine = TRegRoot::LocalMachine;
constexpr TRegRoot User = TRegRoot::CurrentUser;

constexpr TKeyScan UserSoftware = {9, TLabel::Software, User, u"Software\\"};
constexpr TKeyScan MachineSoftware = {9, TLabel::Software, Machine, u"Software\\"};
constexpr TKeyScan Uninstall = {9, TLabel::Software, Machine,
                                u"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\"};
constexpr TKeyScan ARPCache = {
    9, TLabel::Software, Machine,
    u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Management\\ARPCache\\"};

// A vendor's key is empty without subkeys, when it has no values or one default value
// without text. BlankDefaultKind: the kind of the problem in the second case.
std::int32_t ScanSoftware(const TKeyScan &Scan, std::int32_t TScanRegistry::*BlankDefaultKind,
                          TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group) {
  ProgressBar.Advance();
  TKeyWalk Walk(Scan, Engine, StatusLabel, Group);
  return Walk.Run([&](const std::u16string &Name) {
    if (Name == u"Classes") // in this spelling alone
      return;
    const TKeyAt Key = Walk.Open(Name);
    const auto Counts = Key.Key ? Walk.Counts(Key) : std::nullopt;
    if (!Counts || Counts->Subkeys != 0 || Counts->Values > 1)
      return;
    if (Counts->Values == 0)
      return Walk.ReportKey(TLabel::Software, Key, u"", Engine.KindValue);
    const auto Default = Walk.DefaultText(Key);
    if (Default && Trim(*Default).empty())
      Walk.ReportKey(TLabel::Software, Key, u"", Engine.*BlankDefaultKind);
  });
}

// One walk over the uninstall entries.
class TUninstallWalk {
public:
  TUninstallWalk(TScanRegistry &Engine, TStatusLabel &StatusLabel, TGroupItems &Group)
      : Engine_(Engine),
        Walk_(Uninstall, Engine, StatusLabel, Group), Context_{Engine.Disk(), Engine.WinDir,
                                                               false} {
    Engine.UninstallNames.insert(Engine.UninstallNames.end(), Walk_.Names().begin(),
                                 Walk_.Names().end());
  }

  std::int32_t Run() {
    return Walk_.Run([this](const std::u16string &Name) { LookAtEntry(Walk_.Open(Name)); });
  }

private:
  void LookAtEntry(const TKeyAt &Entry) {
    if (!Entry.Key || !Walk_.Values(Entry, Values_) || Values_.Count() == 0)
      return;
    if (Values_.Count() == 1 && Trim(Values_[0].Name).empty()) {
      const auto Counts = Walk_.Counts(Entry);
      if (!Counts || (Counts->Subkeys == 0 && !IsWorthALook(Entry)))
        return;
    }
    for (std::size_t Index = 0; Index < Values_.Count(); ++Index)
      if (Values_[Index].Data.IsText())
        LookAtValue(Entry, Values_[Index].Name, Values_[Index].Data.Text());
  }

  // Of an entry with this one value: it is a default value with text. Without text the
  // whole entry is reported; a value of a blank name is none that a program would set.
  bool IsWorthALook(const TKeyAt &Entry) {
    if (!Values_[0].Name.empty() || !Values_[0].Data.IsText())
      return false;
    if (!Trim(Values_[0].Data.Text()).empty())
      return true;
    Walk_.ReportKey(TLabel::Uninstaller, Entry, u"", Engine_.KindValue);
    return false;
  }

  void LookAtValue(const TKeyAt &Entry, std::u16string_view Name, std::u16string_view Data) {
    if (!IsDeadUninstaller(Context_, Data))
      return;
    TFinding Finding;
    Finding.Label = TLabel::Uninstaller;
    Finding.KeyPath = Entry.Path;
    Finding.ValueName = Name;
    Finding.Data = Data;
    Finding.ItemKind = Engine_.KindValue;
    Finding.BackupLines = {KeyLine(Entry.Path), UninstallLine(Name, Data)};
    Walk_.Report(std::move(Finding));
  }

  TScanRegistry &Engine_;
  TKeyWalk Walk_;
  const TScanContext Context_;
  TRegValueList Values_; // of the entry that is looked at
};

} // namespace

bool IsDeadUninstaller(const TScanContext &Context, std::u16string_view Data) {
  std::u16string Path = WithoutQuotes(Data);
  ExpandSystemRoot(Path, Context.WinDir);
  return IsGoneFileOrFolder(Context, Path, CountQuotes(Data));
}

std::u16string UninstallLine(std::u16string_view Name, std::u16string_view Data) {
  if (!Data.starts_with(u'"'))
    return StringLine(Name, Escaped(Data));
  // The second quote stands behind the arguments, wherever it was: so the editor gets
  // one text that it can read.
  return StringLine(Name, u"\\\"" + Escaped(WithoutQuotes(Data)) + u"\\\"");
}

std::int32_t ScanUserSoftware(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group) {
  return ScanSoftware(UserSoftware, &TScanRegistry::KindValue, Engine, StatusLabel, ProgressBar,
                      Group);
}

std::int32_t ScanMachineSoftware(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                 TProgressBar &ProgressBar, TGroupItems &Group) {
  return ScanSoftware(MachineSoftware, &TScanRegistry::KindKey, Engine, StatusLabel, ProgressBar,
                      Group);
}

std::int32_t ScanUninstall(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group) {
  ProgressBar.Advance();
  return TUninstallWalk(Engine, StatusLabel, Group).Run();
}

std::int32_t ScanARPCache(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group) {
  ProgressBar.Advance();
  TKeyWalk Walk(ARPCache, Engine, StatusLabel, Group);
  // Names that could not be read are not missing.
  if (Engine.IsUnreadable(FullPath(Uninstall)))
    return 0;
  const std::set<std::u16string_view, TNameLess> Installed(Engine.UninstallNames.begin(),
                                                           Engine.UninstallNames.end());
  return Walk.Run([&](const std::u16string &Name) {
    if (!Installed.contains(Name))
      Walk.ReportKey(TLabel::Uninstaller, Walk.PathOf(Name), u"", Engine.KindValue);
  });
}

} // namespace hivesweep
