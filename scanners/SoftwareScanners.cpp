#include "scanners/SoftwareScanners.h"

#include <set>
#include <utility>

#include "engine/ExportLines.h"
#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/KeyRules.h"
#include "scanners/LocalTargets.h"
#include "scanners/ScannerRun.h"

namespace hivesweep {

namespace {

constexpr TRegRoot Machine = TRegRoot::LocalMachine;

constexpr std::u16string_view Uninstall =
    u"Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall";
constexpr std::u16string_view ARPCache =
    u"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\App Management\\ARPCache";

// Moves the bar, opens the key, and when that can be done shows the label.
TKeyAt Begin(TScannerRun &Run, TRegRoot Root, std::u16string_view Path) {
  Run.ProgressBar.Advance();
  TKeyAt Top = Run.Open(Root, Path);
  if (Top)
    Run.ShowStatus(TProblemType::Software);
  return Top;
}

// A vendor's key is empty without subkeys, when it has no values or one default value
// without text. BlankDefaultKind: the kind of the problem in the second case.
std::int32_t ScanSoftware(TScannerRun Run, TRegRoot Root, std::int32_t BlankDefaultKind) {
  const TKeyAt Top = Begin(Run, Root, u"Software");
  if (!Top)
    return 0;
  Run.ForEachName(Run.SubkeyNames(Top), [&](const std::u16string &Name) {
    if (Name == u"Classes") // in this spelling alone
      return;
    const TKeyAt Key = Run.Open(Top, Name);
    const TContent Content = Key ? ContentOf(Run, Key) : TContent::Filled;
    if (Content != TContent::Filled)
      Run.ReportKey(TProblemType::Software, Key.Path, u"",
                    Content == TContent::Nothing ? Run.Engine.KindValue : BlankDefaultKind);
  });
  return Run.Found;
}

// One walk over the uninstall entries.
class TUninstallWalk {
public:
  TUninstallWalk(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                 TGroupItems &Group)
      : Run_(Engine, StatusLabel, ProgressBar, Group, 9), Context_{Engine.Disk(), Engine.WinDir,
                                                                   false} {}

  std::int32_t OverEntries() {
    const TKeyAt Top = Begin(Run_, Machine, Uninstall);
    if (!Top)
      return 0;
    const TKeyNames Names = Run_.SubkeyNames(Top);
    std::vector<std::u16string> &Known = Run_.Engine.UninstallNames;
    Known.insert(Known.end(), Names.begin(), Names.end());
    Run_.ForEachKey(Top, Names, [this](const TKeyAt &Entry) { LookAtEntry(Entry); });
    return Run_.Found;
  }

private:
  void LookAtEntry(const TKeyAt &Entry) {
    if (!Run_.Values(Entry, Values_) || Values_.Count() == 0)
      return;
    if (Values_.Count() == 1 && Trim(Values_[0].Name).empty()) {
      const auto Counts = Run_.Counts(Entry);
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
    Run_.ReportKey(TProblemType::Uninstaller, Entry.Path, u"", Run_.Engine.KindValue);
    return false;
  }

  void LookAtValue(const TKeyAt &Entry, std::u16string_view Name, std::u16string_view Data) {
    if (!IsDeadUninstaller(Context_, Data))
      return;
    TFinding Finding;
    Finding.Label = TProblemType::Uninstaller;
    Finding.KeyPath = Entry.Path;
    Finding.ValueName = Name;
    Finding.Data = Data;
    Finding.ItemKind = Run_.Engine.KindValue;
    Finding.BackupLines = {KeyLine(Entry.Path), UninstallLine(Name, Data)};
    Run_.Report(std::move(Finding));
  }

  TScannerRun Run_;
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
  return ScanSoftware({Engine, StatusLabel, ProgressBar, Group, 9}, TRegRoot::CurrentUser,
                      Engine.KindValue);
}

std::int32_t ScanMachineSoftware(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                 TProgressBar &ProgressBar, TGroupItems &Group) {
  return ScanSoftware({Engine, StatusLabel, ProgressBar, Group, 9}, Machine, Engine.KindKey);
}

std::int32_t ScanUninstall(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group) {
  return TUninstallWalk(Engine, StatusLabel, ProgressBar, Group).OverEntries();
}

std::int32_t ScanARPCache(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 9);
  const TKeyAt Top = Begin(Run, Machine, ARPCache);
  // Names that could not be read are not missing.
  if (!Top || Engine.IsUnreadable(Below(RegRootName(Machine), Uninstall)))
    return 0;
  const std::set<std::u16string_view, TNameLess> Installed(Engine.UninstallNames.begin(),
                                                           Engine.UninstallNames.end());
  Run.ForEachName(Run.SubkeyNames(Top), [&](const std::u16string &Name) {
    if (!Installed.contains(Name))
      Run.ReportKey(TProblemType::Uninstaller, Below(Top.Path, Name), u"", Engine.KindValue);
  });
  return Run.Found;
}

} // namespace hivesweep
