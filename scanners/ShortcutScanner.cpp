#include <algorithm>
#include <iterator>
#include <utility>

#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/CommandRules.h"
#include "scanners/LocalTargets.h"
#include "scanners/ScannerRun.h"
#include "scanners/ShellScanners.h"
#include "scanners/ValueScan.h"

namespace hivesweep {

namespace {

// Where shortcuts are kept, the user's and all users'.
std::vector<std::u16string> ShortcutFolders(TFolders &Folders) {
  std::vector<std::u16string> Out;
  const auto Add = [&](std::u16string Folder) {
    const auto IsSame = [&](const std::u16string &Other) { return EqualNoCase(Folder, Other); };
    if (!Folder.empty() && std::none_of(Out.begin(), Out.end(), IsSame))
      Out.push_back(std::move(Folder));
  };
  for (const TSpecialFolder Folder :
       {TSpecialFolder::Desktop, TSpecialFolder::StartMenu, TSpecialFolder::SendTo,
        TSpecialFolder::Recent, TSpecialFolder::CommonDesktop, TSpecialFolder::CommonStartMenu})
    Add(SpecialFolderPath(Folders, Folder));
  for (const TSpecialFolder Folder : {TSpecialFolder::AppData, TSpecialFolder::CommonAppData})
    if (const std::u16string Data = SpecialFolderPath(Folders, Folder); !Data.empty())
      Add(Data + u"\\Microsoft\\Internet Explorer\\Quick Launch");
  return Out;
}

constexpr std::u16string_view Extension = u".lnk";

bool IsShortcut(std::u16string_view Name) {
  return Name.size() > Extension.size() &&
         EqualNoCase(Name.substr(Name.size() - Extension.size()), Extension);
}

void CheckShortcut(TScannerRun &Run, const std::u16string &Path) {
  TPlatform &Platform = Run.Engine.Platform();
  std::optional<std::u16string> Target = Platform.Shell->ShortcutTarget(Path);
  if (!Target)
    return;
  ExpandEnvironment(*Target, *Platform.System);
  if (!IsPlainPath(Run.Engine, *Target) || !IsGone(Run.Engine, *Target))
    return;
  // No backup lines: nothing in the registry is concerned.
  Run.Report({.Label = TProblemType::ShortcutFile,
              .Action = TFixAction::RemoveFile,
              .KeyPath = Path,
              .ValueName = std::u16string(WholeKey),
              .Data = Path,
              .ItemKind = Run.Engine.KindValue,
              .BackupLines = {}});
}

// The folders that are still to be looked into, the next one last.
using TFoldersToSee = std::vector<std::u16string>;

void CheckFolder(TScannerRun &Run, const std::u16string &Folder, TFoldersToSee &Waiting) {
  // Names first: the folder is not held while messages are handled.
  std::vector<std::u16string> Shortcuts;
  Run.Engine.Platform().Files->List(Folder, [&](const TFolderEntry &Entry) {
    if (Entry.IsFolder && !Entry.IsLink)
      Waiting.push_back(Below(Folder, Entry.Name));
    else if (!Entry.IsFolder && IsShortcut(Entry.Name))
      Shortcuts.push_back(Below(Folder, Entry.Name));
    return true;
  });
  for (const std::u16string &Path : Shortcuts) {
    if (!Run.GoesOn())
      return;
    CheckShortcut(Run, Path);
  }
}

// Shell folders: a scanner of values like many others.
constexpr std::u16string_view ShellFoldersPath =
    u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\Shell Folders";
constexpr TScanKey ShellFoldersKeys[] = {
    {TRegRoot::CurrentUser, ShellFoldersPath},
    {TRegRoot::LocalMachine, ShellFoldersPath},
};

std::optional<TVerdict> JudgeShellFolder(const TScanContext &Context, const TScanEntry &Entry) {
  const std::u16string Path(Entry.Value.Text());
  if (Contains(Path, u'%') || !IsLocalPath(Context.Disk, Path) || !Context.Disk.NoSuchFolder(Path))
    return std::nullopt;
  return TVerdict{Path, Path, false};
}

constexpr TValueScan ShellFolders = {
    .Area = 8,
    .StatusLabel = TProblemType::Shortcuts,
    .RecordLabel = TProblemType::Shortcuts,
    .Rule = JudgeShellFolder,
    .Keys = ShellFoldersKeys,
};

} // namespace

std::int32_t ScanShortcutFiles(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                               TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 8);
  Run.Begin(TProblemType::Shortcuts);
  TFoldersToSee Waiting = ShortcutFolders(*Engine.Platform().Folders);
  std::reverse(Waiting.begin(), Waiting.end());
  while (!Waiting.empty() && Run.GoesOn()) {
    const std::u16string Folder = std::move(Waiting.back());
    Waiting.pop_back();
    CheckFolder(Run, Folder, Waiting);
  }
  return Run.Found;
}

std::int32_t ScanShellFolders(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                              TProgressBar &ProgressBar, TGroupItems &Group) {
  return RunValueScan(ShellFolders, Engine, StatusLabel, ProgressBar, Group);
}

} // namespace hivesweep
