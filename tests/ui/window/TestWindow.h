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
#include "platform/Text.h"
#include "repair/AppFrame.h"
#include "tests/platform/TestHosts.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

// The machine's folders, but for that of the program.
class TFoldersWithProgram final : public TFolders {
public:
  TFoldersWithProgram(std::unique_ptr<TFolders> System, std::u16string Program)
      : System_(std::move(System)), Program_(std::move(Program)) {}

  std::u16string Special(TSpecialFolder Folder) override { return System_->Special(Folder); }
  std::u16string Windows() override { return System_->Windows(); }
  std::u16string Temp() override { return System_->Temp(); }
  std::u16string Program() override { return Program_; }

private:
  const std::unique_ptr<TFolders> System_;
  const std::u16string Program_;
};

// The machine that the test runs on, with the windows' own messages. Program: where the
// program lies, if not there.
inline TPlatform WindowPlatform(std::u16string_view Program = u"") {
  TPlatform Platform = std::move(*MakeLivePlatform());
  Platform.Messages = MakeWindowMessages();
  if (!Program.empty())
    Platform.Folders =
        std::make_unique<TFoldersWithProgram>(std::move(Platform.Folders), std::u16string(Program));
  return Platform;
}

// Sets the whole suite to a language of the program's folder.
inline TPlatform InLanguage(TPlatform Platform, std::u16string_view Language) {
  const std::u16string Suite =
      Platform.Folders->Special(TSpecialFolder::AppData) + u"\\Orvane\\Tallowmere V4";
  Platform.Storage->CreateFolder(Suite);
  WriteIni(*Platform.Profiles, Suite + u"\\Main.ini", u"Main", u"Language", Language);
  return Platform;
}

// Handles messages as the program does, and lets a test have its turn before.
class TWatchedMessages final : public TMessages {
public:
  explicit TWatchedMessages(std::function<void()> &OnPump) : OnPump_(OnPump) {}
  void Pump() override {
    Turn();
    Inner_->Pump();
  }
  void PumpAll() override {
    Turn();
    Inner_->PumpAll();
  }
  void Post(TWindowHandle Window, std::uint32_t Message, std::uintptr_t WParam,
            std::intptr_t LParam) override {
    Inner_->Post(Window, Message, WParam, LParam);
  }

private:
  void Turn() {
    if (OnPump_ && !std::exchange(InTurn_, true)) {
      OnPump_();
      InTurn_ = false;
    }
  }

  std::unique_ptr<TMessages> Inner_ = MakeWindowMessages();
  std::function<void()> &OnPump_;
  bool InTurn_ = false;
};

// OnPump may be set and changed later, and outlives the platform.
inline TPlatform WatchedPlatform(std::function<void()> &OnPump, std::u16string_view Program = u"") {
  TPlatform Platform = WindowPlatform(Program);
  Platform.Messages = std::make_unique<TWatchedMessages>(OnPump);
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

// The user's data folder, which holds no files when a test begins and ends.
class TTestData {
public:
  explicit TTestData(TPlatform &Platform)
      : Paths(DataPathsOf(TAppFrame(*Platform.Folders))), Storage_(*Platform.Storage) {
    Clear();
    Storage_.CreateFolder(Paths.BackupFolderPath);
  }
  TTestData(const TTestData &) = delete;
  TTestData &operator=(const TTestData &) = delete;
  ~TTestData() { Clear(); }

  // The names of the files in the folder of backups.
  std::vector<std::u16string> Backups() {
    std::vector<TStoredFile> Files;
    Storage_.List(Paths.BackupFolderPath, Files);
    std::vector<std::u16string> Names;
    for (const TStoredFile &File : Files)
      Names.push_back(File.Name);
    return Names;
  }

  const TDataPaths Paths;

private:
  void Clear() {
    for (const std::u16string &File : {Paths.MainIniPath, Paths.IgnoreIniPath})
      Storage_.Remove(File);
    for (const std::u16string &Folder : {Paths.BackupFolderPath, Paths.UndoFolderPath}) {
      std::vector<TStoredFile> Files;
      Storage_.List(Folder, Files);
      for (const TStoredFile &File : Files)
        Storage_.Remove(Folder + File.Name);
    }
  }

  TStorage &Storage_;
};

// Some keys of the real registry, which are gone when a test begins and ends.
class TTestCorner {
public:
  explicit TTestCorner(TRegistryHost &Host) : Host_(Host) { Clear(); }
  TTestCorner(const TTestCorner &) = delete;
  TTestCorner &operator=(const TTestCorner &) = delete;
  ~TTestCorner() { Clear(); }

  static std::u16string KeyPath(std::u16string_view Below) {
    return u"HKEY_CURRENT_USER\\" + Path(Below);
  }
  void SetText(std::u16string_view Below, std::u16string_view Name, std::u16string_view Text) {
    const TRegOpened Root = Host_.Open(TRegRoot::CurrentUser, u"", TRegAccess::Full);
    std::u16string Stored(Text);
    Stored.push_back(u'\0');
    Root.Key->Create(Path(Below))
        .Key->SetValue(Name, TRegType::String, std::as_bytes(std::span(Stored)));
  }
  // Empty when there is no such value.
  std::u16string Text(std::u16string_view Below, std::u16string_view Name) {
    TRegValue Value;
    if (const TRegOpened Key = Host_.Open(TRegRoot::CurrentUser, Path(Below)); Key.Key)
      Key.Key->Read(Name, Value);
    return std::u16string(UpToZero(Value.Data().Text()));
  }

private:
  static std::u16string Path(std::u16string_view Below) {
    return u"Software\\Hivesweep window test\\" + std::u16string(Below);
  }
  void Clear() {
    const TRegOpened Root = Host_.Open(TRegRoot::CurrentUser, u"Software", TRegAccess::Full);
    Root.Key->DeleteTree(u"Hivesweep window test");
  }

  TRegistryHost &Host_;
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
