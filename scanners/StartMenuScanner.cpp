#include <algorithm>
#include <iterator>
#include <utility>

#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/ScannerRun.h"
#include "scanners/ShellScanners.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view OrderPath =
    u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder";

// A key of the order, and the folders of the two start menus that it may stand for.
struct TMenu {
  TKeyAt Key;
  std::vector<std::u16string> Folders; // the user's first
};

// Older systems keep a menu's order in a subkey "Menu" of its own, and may write the
// name with the mark of its keyboard shortcut: "&Programs".
bool IsMenuItself(std::u16string_view Name) { return EqualNoCase(Name, u"Menu"); }

std::vector<std::u16string> FoldersBelow(const std::vector<std::u16string> &Parents,
                                         const std::u16string &Name) {
  std::u16string Unmarked = Name;
  RemoveAll(Unmarked, u"&");
  std::vector<std::u16string> Out;
  for (const std::u16string &Parent : Parents) {
    Out.push_back(Below(Parent, Name));
    if (Unmarked != Name)
      Out.push_back(Below(Parent, Unmarked));
  }
  return Out;
}

// Judges the keys below a menu; those that are alive wait for their own turn.
void CheckMenu(TScannerRun &Run, TMenu &Menu, std::vector<TMenu> &Waiting) {
  Run.ForEachName(Run.SubkeyNames(Menu.Key), [&](const std::u16string &Name) {
    if (IsMenuItself(Name))
      return;
    std::vector<std::u16string> Folders = FoldersBelow(Menu.Folders, Name);
    const std::u16string Expected = Folders.front();
    std::erase_if(Folders, [&](const std::u16string &Folder) {
      return Run.Engine.Disk().NoSuchFolder(Folder);
    });
    if (Folders.empty())
      Run.ReportKey(TProblemType::StartMenu, Below(Menu.Key.Path, Name), Expected,
                    Run.Engine.KindKey);
    else if (TKeyAt Key = Run.Open(Menu.Key, Name))
      Waiting.push_back({std::move(Key), std::move(Folders)});
  });
}

} // namespace

std::int32_t ScanStartMenu(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                           TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 11);
  Run.Begin(TProblemType::StartMenu);
  TFolders &Folders = *Engine.Platform().Folders;
  std::vector<std::u16string> Menus;
  for (const TSpecialFolder Folder : {TSpecialFolder::StartMenu, TSpecialFolder::CommonStartMenu}) {
    const std::u16string Path = SpecialFolderPath(Folders, Folder);
    // A menu that can't be judged could hold every folder.
    if (!Engine.Disk().IsOnFixedDrive(Path))
      return 0;
    Menus.push_back(Path);
  }
  for (const std::u16string_view Name : {u"Start Menu", u"Start Menu2"}) {
    std::vector<TMenu> Waiting;
    if (TKeyAt Top = Run.Open(TRegRoot::CurrentUser, Below(OrderPath, Name)))
      Waiting.push_back({std::move(Top), Menus});
    while (!Waiting.empty() && !Engine.Stopped) {
      TMenu Menu = std::move(Waiting.back());
      Waiting.pop_back();
      CheckMenu(Run, Menu, Waiting);
    }
  }
  return Run.Found;
}

} // namespace hivesweep
