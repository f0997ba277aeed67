// What tests of the program's forms stand on: a workbench over the machine that the test
// runs on, with whatever scanners a test brings.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "controls/Form.h"
#include "controls/MessageLoop.h"
#include "repair/AppFrame.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

// The machine's folders, but for that of the program: the shipped files lie there.
class TShippedFolders final : public TFolders {
public:
  TShippedFolders(std::unique_ptr<TFolders> System, std::u16string Program)
      : System_(std::move(System)), Program_(std::move(Program)) {}

  std::u16string Special(TSpecialFolder Folder) override { return System_->Special(Folder); }
  std::u16string Windows() override { return System_->Windows(); }
  std::u16string Temp() override { return System_->Temp(); }
  std::u16string Program() override { return Program_; }

private:
  const std::unique_ptr<TFolders> System_;
  const std::u16string Program_;
};

// The machine that the test runs on, with the windows' own messages.
inline TPlatform WindowPlatform(std::u16string_view Program = u"") {
  TPlatform Platform = std::move(*MakeLivePlatform());
  Platform.Messages = MakeWindowMessages();
  if (!Program.empty())
    Platform.Folders =
        std::make_unique<TShippedFolders>(std::move(Platform.Folders), std::u16string(Program));
  return Platform;
}

// Sets the whole suite to a language of the program's folder.
inline TPlatform InLanguage(TPlatform Platform, std::u16string_view Language) {
  const std::u16string Suite =
      Platform.Folders->Special(TSpecialFolder::AppData) + u"\\Orvane\\Tallowmere V4";
  Platform.Storage->CreateFolder(Suite);
  Platform.Profiles->WriteString(Suite + u"\\Main.ini", u"Main", u"Language", Language);
  return Platform;
}

struct TTestBench : TWorkbench {
  explicit TTestBench(std::span<const TScannerRow> Scanners = {}, TPlatform Own = WindowPlatform())
      : TWorkbench(std::move(Own), Scanners) {}

  // A problem of that area, in the problem list and not yet in its view.
  TItemInfo &AddProblem(int Area, std::u16string_view KeyPath, std::u16string_view TypeName = u"") {
    const std::u16string Name(AreaByNumber(Area).GroupName);
    TGroupItems *Group = Problems.FindGroup(Name);
    if (!Group)
      Group = Problems.AddGroup(Name);
    TItemInfo &Item = *Group->Add();
    Item.TypeName = TypeName;
    Item.KeyPath = KeyPath;
    Item.ValueName = WholeKey;
    Item.ImageIndex = ToDecimal(static_cast<unsigned>(Area));
    return Item;
  }
};

// A main window that only remembers what dialogs do to it.
struct TOwnLook {
  TLook Look;
};
class TTestMain : private TOwnLook, public TForm, public TMainView {
public:
  TTestMain()
      : TForm(TOwnLook::Look, nullptr,
              {.Name = u"test_main", .Caption = u"Main", .Size = {600, 400}, .Dialog = false}, {}) {
  }

  void BeginRun() override { Note(u"BeginRun"); }
  void ClearCounts() override { Note(u"ClearCounts"); }
  void EndRun(bool Scanned) override { Note(Scanned ? u"EndRun of a scan" : u"EndRun of a fix"); }
  void SetWelcome(std::u16string_view Text) override {
    Welcome = Text;
    Note(u"SetWelcome");
  }
  void RefreshCounts() override { Note(u"RefreshCounts"); }

  std::vector<std::u16string> Happened;
  std::u16string Welcome;
  std::function<void(std::u16string_view What)> OnCall; // after it has been noted

private:
  void Note(const char16_t *What) {
    Happened.emplace_back(What);
    if (OnCall)
      OnCall(What);
  }
};

} // namespace hivesweep
