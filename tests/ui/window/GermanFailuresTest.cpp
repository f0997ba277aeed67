// A German window tells in German why something could not be done, down to the system's own
// errors, whatever language the system speaks.
#include <gtest/gtest.h>

#include "controls/Button.h"
#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "controls/Win32.h"
#include "tests/controls/User.h"
#include "tests/ui/NoEnglish.h"
#include "tests/ui/window/Script.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/CheckForm.h"
#include "ui/IgnoredForm.h"
#include "ui/MainForm.h"
#include "ui/RescueForm.h"

namespace hivesweep {
namespace {

// Starts no program.
class TNoShell final : public TShell {
public:
  bool Open(std::u16string_view, std::u16string_view) override { return false; }
  std::unique_ptr<TProcess> Start(std::u16string_view, std::u16string_view) override {
    return nullptr;
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view) override { return {}; }
};

// Something else in a file's or a folder's place, or a program that holds a file.
class TObstacle {
public:
  enum class TKind { Folder, File, Lock };

  TObstacle(std::u16string Path, TKind Kind) : Path_(std::move(Path)), Kind_(Kind) {
    if (Path_.ends_with(u'\\'))
      Path_.pop_back();
    if (Kind_ == TKind::Folder) {
      EXPECT_TRUE(CreateDirectoryW(Wide(Path_), nullptr));
      return;
    }
    if (Kind_ == TKind::File)
      RemoveDirectoryW(Wide(Path_));
    File_ = CreateFileW(Wide(Path_), GENERIC_READ, 0, nullptr,
                        Kind_ == TKind::File ? CREATE_NEW : OPEN_EXISTING, 0, nullptr);
    EXPECT_NE(File_, INVALID_HANDLE_VALUE) << ToUtf8(Path_);
  }
  TObstacle(const TObstacle &) = delete;
  TObstacle &operator=(const TObstacle &) = delete;
  ~TObstacle() {
    if (File_)
      CloseHandle(File_);
    if (Kind_ == TKind::Folder)
      RemoveDirectoryW(Wide(Path_));
    else if (Kind_ == TKind::File)
      DeleteFileW(Wide(Path_));
  }

private:
  std::u16string Path_;
  const TKind Kind_;
  HANDLE File_ = nullptr;
};
using enum TObstacle::TKind;

class GermanWindow : public testing::Test {
protected:
  GermanWindow() {
    Bench.Language.SetLanguage(u"German");
    Main.Show();
  }

  // Names of files and keys speak no language.
  void ExpectGerman(std::u16string Text, const char *Why) {
    EXPECT_GT(Text.size(), 20U) << Why;
    const std::u16string &Ini = Data.Paths.IgnoreIniPath;
    for (const std::u16string &Front :
         {Ini.substr(0, Ini.rfind(u'\\')), TTestCorner::KeyPath(u""), std::u16string(u"backup2")})
      for (std::size_t At; (At = Text.find(Front)) != std::u16string::npos;)
        Text.erase(At, std::min(Text.find_first_of(u" :,;", At + Front.size()), Text.size()) - At);
    EXPECT_EQ(ToUtf8(EnglishIn(Bench.Language, Text)), "") << Why << ": " << ToUtf8(Text);
  }
  static std::u16string Shown(const TForm &Dialog, const char16_t *Label) {
    const auto &Control = Dialog.Find<TControl>(Label);
    return Control.Visible() ? Control.Text() : u"";
  }

  // What the dialog says after a fix of one value; the value is there before.
  std::u16string Fix() {
    Corner.SetText(u"A", u"x", u"one");
    Bench.Problems.Clear();
    Bench.AddProblem(4, TTestCorner::KeyPath(u"A")).ValueName = u"x";
    Bench.Engine.BackupText = {u"[" + TTestCorner::KeyPath(u"A") + u"]", u"\"x\"=\"one\""};
    Bench.DialogMode = TDialogMode::Fix;
    Tfrm_check Dialog(Main, Bench, Main);
    Dialog.Show();
    Dialog.Find<TButton>(u"bt_scan").Click();
    return Shown(Dialog, u"Lab_status");
  }
  // What it says after a command on the first backup; Boxes answers what it asks.
  std::u16string Command(const char16_t *Button, std::vector<int> Boxes) {
    Tfrm_rescue Dialog(Main, Bench);
    Dialog.Show();
    const TBoxAnswer Answers(std::move(Boxes));
    Dialog.Find<TButton>(Button).Click();
    const auto &Close = Dialog.Find<TButton>(u"Button3");
    WaitUntil([&] { return Dialog.Find<TButton>(Button).Enabled() && Close.Enabled(); });
    return Shown(Dialog, u"Label_failure");
  }

  TTestBench Bench{{}, WindowPlatform(SHIPPED_FOLDER)};
  TTestData Data{Bench.Platform};
  TTestCorner Corner{*Bench.Platform.Registry};
  TTestMain Main;
};

TEST_F(GermanWindow, SaysWhyAProblemIsNotIgnoredOrStaysIgnored) {
  TLook Look;
  Tfrm_main Window(Look, Bench);
  Window.Show();
  Bench.AddProblem(4, TTestCorner::KeyPath(u"a=b"));
  Bench.AddProblem(4, TTestCorner::KeyPath(u"A"));
  Window.EndRun(true);
  auto &Rows = Window.Find<TListView>(u"Lv_problems");
  for (const int Row : {0, 1}) {
    const TObstacle InTheWay(Data.Paths.IgnoreIniPath, Folder);
    const TBoxAnswer User(IDOK);
    Rows.Select(Row);
    Window.Find<TMenuItem>(u"IgnoredProblem1").Click();
    ExpectGerman(User.Text(), "ignore");
  }

  EXPECT_FALSE(TRegistryClean(Bench.Platform).IgnoreList.Add(TTestCorner::KeyPath(u"A"), u""));
  Tfrm_ignored Dialog(Main, Bench, Main);
  Dialog.Show();
  const TObstacle Held(Data.Paths.IgnoreIniPath, Lock);
  const TBoxAnswer User(IDOK);
  Dialog.Find<TMenuItem>(u"SelectAll1").Click();
  Dialog.Find<TButton>(u"Bt_remove").Click();
  ExpectGerman(User.Text(), "no longer ignore");
}

TEST_F(GermanWindow, SaysWhyAFixDidNotBegin) {
  const struct {
    const char *Why;
    std::u16string Path;
    TObstacle::TKind Kind;
  } Cases[] = {{"no backup folder", Data.Paths.BackupFolderPath, File},
               {"no undo folder", Data.Paths.UndoFolderPath, File},
               {"no ignore list", Data.Paths.IgnoreIniPath, Folder}};
  for (const auto &C : Cases) {
    const TObstacle InTheWay(C.Path, C.Kind);
    ExpectGerman(Fix(), C.Why);
    EXPECT_EQ(Corner.Text(u"A", u"x"), u"one") << C.Why;
  }
}

TEST_F(GermanWindow, SaysWhatARestoreCouldNotDo) {
  const std::vector<int> Yes = {IDYES}, YesAndRead = {IDYES, IDOK};
  const auto Folder = [this] { return Data.Paths.BackupFolderPath; };
  ASSERT_FALSE(Bench.Platform.Storage->Write(
      Folder() + u"backup20090715143001.reg",
      "REGEDIT4\r\n\r\n" + ToUtf8(u"[" + TTestCorner::KeyPath(u"A") + u"]\r\n\"x\"=\"two\"\r\n")));
  {
    const TObstacle InTheWay(Data.Paths.UndoFolderPath, File);
    ExpectGerman(Command(u"Button1", Yes), "what is there can't be recorded");
  }
  {
    const TObstacle Held(Folder() + u"backup20090715143001.reg", Lock);
    ExpectGerman(Command(u"Button1", Yes), "the text can't be read");
    ExpectGerman(Command(u"Button2", Yes), "the text can't be deleted");
  }
  ExpectGerman(Command(u"Button1", YesAndRead), "only the text is there");
  for (const TBackupEntry &Backup : TRegistryClean(Bench.Platform).EnumerateBackups())
    EXPECT_FALSE(TRegistryClean(Bench.Platform).DeleteBackup(Backup.Name));

  Fix();
  std::vector<TStoredFile> Records;
  Bench.Platform.Storage->List(Data.Paths.UndoFolderPath, Records);
  ASSERT_EQ(Records.size(), 1U);
  const std::u16string Record = Data.Paths.UndoFolderPath + Records.front().Name;
  {
    const TObstacle Held(Record, Lock);
    ExpectGerman(Command(u"Button1", Yes), "the record can't be read");
  }
  Bench.Platform.Shell = std::make_unique<TNoShell>();
  std::string Whole;
  ASSERT_FALSE(Bench.Platform.Storage->Read(Record, Whole));
  ASSERT_FALSE(Bench.Platform.Storage->Write(Record, Whole.substr(0, Whole.size() - 1)));
  // What the text alone should have brought back is listed.
  const TScript Reader({{u"frm_report", [this](TForm &Report) {
                           ExpectGerman(Shown(Report, u"Lab_summary"), "the summary");
                           Report.Find<TButton>(u"Bt_close").Click();
                         }}});
  ExpectGerman(Command(u"Button1", YesAndRead), "the record is damaged, and there is no editor");
  EXPECT_TRUE(Reader.Done());
}

} // namespace
} // namespace hivesweep
