// The dialog of the backups: real files, the real registry editor, real presses.
#include <algorithm>

#include <gtest/gtest.h>

#include "controls/Button.h"
#include "controls/ListView.h"
#include "controls/Win32.h"
#include "tests/controls/User.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/RescueForm.h"

namespace hivesweep {
namespace {

using TNames = std::vector<std::u16string>;

const std::u16string Ask = u"You will perform a rollback with this backup. Continue?";
const std::u16string Success = u"The backup has been restored successfully!";
const std::u16string AskDelete = u"You will delete this backup. Continue?";

// An editor that ends when the test lets it.
class TSlowShell final : public TShell {
public:
  explicit TSlowShell(bool &Ended) : Ended_(Ended) {}
  bool Open(std::u16string_view, std::u16string_view) override { return false; }
  std::unique_ptr<TProcess> Start(std::u16string_view, std::u16string_view) override {
    struct TEditor final : TProcess {
      explicit TEditor(const bool &Done) : Ended(Done) {}
      bool WaitForEnd(std::uint32_t) override { return Ended; }
      const bool &Ended;
    };
    return std::make_unique<TEditor>(Ended_);
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view) override { return {}; }

private:
  bool &Ended_;
};

class RescueForm : public testing::Test {
protected:
  RescueForm() { Main.Show(); }

  // A backup of one value, which is gone then; its record with it. Answers its name.
  std::u16string MakeBackup() {
    Corner.SetText(u"A", u"x", u"one");
    Bench.AddProblem(4, TTestCorner::KeyPath(u"A")).ValueName = u"x";
    Bench.Engine.BackupText = {u"[" + TTestCorner::KeyPath(u"A") + u"]", u"\"x\"=\"one\""};
    struct TNoLabel final : TStatusLabel {
      void SetText(std::u16string_view) override {}
    } Label;
    struct TNoBar final : TProgressBar {
      void Changed() override {}
    } Bar;
    TRegistryClean Clean(Bench.Platform);
    const TFixReport Report = Clean.BackupAndFix(Bench.Problems, Bench.Engine, Label, Bar, u"");
    EXPECT_EQ(Report.Removed, 1);
    EXPECT_EQ(Corner.Text(u"A", u"x"), u"");
    return Report.BackupName;
  }
  void Write(std::u16string_view Name, std::string_view Bytes) {
    EXPECT_EQ(
        Bench.Platform.Storage->Write(Data.Paths.BackupFolderPath + std::u16string(Name), Bytes),
        TError());
  }

  static int RowOf(TForm &Dialog, std::u16string_view Name) {
    auto &List = Dialog.Find<TListView>(u"Lv_back");
    for (int Row = 0; Row < List.RowCount(); ++Row)
      if (List.Cells(Row).Texts.back() == Name)
        return Row;
    return -1;
  }
  static void PressRow(TForm &Dialog, int Row) {
    auto &List = Dialog.Find<TListView>(u"Lv_back");
    const TRect Place = List.RowBounds(Row);
    PressAt(List, {Place.Left + 20, Place.Top + Place.Height / 2});
  }
  static bool CanAct(const TForm &Dialog) {
    EXPECT_EQ(Dialog.Find<TButton>(u"Button1").Enabled(),
              Dialog.Find<TButton>(u"Button2").Enabled());
    return Dialog.Find<TButton>(u"Button1").Enabled();
  }

  std::function<void()> OnPump;
  TTestBench Bench{{}, WatchedPlatform(OnPump)};
  TTestData Data{Bench.Platform};
  TTestCorner Corner{*Bench.Platform.Registry};
  TTestMain Main;
};

TEST_F(RescueForm, AnEmptyFolderLeavesNothingToDoButClose) {
  Write(u"notes.txt", "x");
  Write(u"backupX.txt", "x");
  Tfrm_rescue Dialog(Main, Bench);
  Dialog.Show();
  EXPECT_EQ(Dialog.Find<TListView>(u"Lv_back").RowCount(), 0);
  EXPECT_FALSE(CanAct(Dialog));
  EXPECT_TRUE(Dialog.Find<TButton>(u"Button3").Focused());
  Type(VK_ESCAPE);
  EXPECT_FALSE(Dialog.Visible());
}

// For sizes that have no cell, or two of them, the third cell holds no name: the commands
// do nothing there, as users know it.
TEST_F(RescueForm, ShowsSizesAndCommandsOnlyRowsWhoseThirdCellIsTheName) {
  const struct {
    std::u16string Name;
    std::size_t Bytes;
    TNames Cells; // behind the date
    bool Goes;
  } Cases[] = {
      {u"backup20090715143001.reg", 999, {u"0", u"999 Byte"}, true},
      {u"backup20090715143002.reg", 1000, {u"0"}, false},
      {u"backup20090715143003.reg", 2500, {u"0", u"2.5 KB"}, true},
      {u"backup20090715143004.reg", 1'000'000, {u"0", u"1000 KB"}, true},
      {u"backup20090715143005.reg", 1'500'000, {u"0", u"1500 KB", u"1.5 M"}, false},
  };
  for (const auto &C : Cases)
    Write(C.Name, std::string(C.Bytes, 'x'));
  Tfrm_rescue Dialog(Main, Bench);
  Dialog.Show();
  auto &List = Dialog.Find<TListView>(u"Lv_back");
  ASSERT_EQ(List.RowCount(), static_cast<int>(std::size(Cases)));
  EXPECT_EQ(List.Selected(), 0);
  EXPECT_TRUE(List.Focused());
  EXPECT_TRUE(CanAct(Dialog));
  int Count = List.RowCount();
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Bytes);
    const int Row = RowOf(Dialog, C.Name);
    const TNames Texts = List.Cells(Row).Texts;
    EXPECT_EQ(TNames(Texts.begin() + 1, Texts.end() - 1), C.Cells);
    EXPECT_EQ(Texts.front().size(), std::size("07/15/2009 14:30:05") - 1);
    PressRow(Dialog, Row);
    EXPECT_TRUE(CanAct(Dialog));
    if (!C.Goes) {
      const TBoxAnswer Yes(IDYES);
      Press(Dialog.Find<TButton>(u"Button1"));
      EXPECT_EQ(Yes.Texts(), TNames{Ask}) << "and no word of a success";
      EXPECT_FALSE(Dialog.Find<TControl>(u"Label_failure").Visible());
    }
    {
      const TBoxAnswer No(IDNO);
      Press(Dialog.Find<TButton>(u"Button2"));
      EXPECT_EQ(No.Texts(), TNames{AskDelete});
      EXPECT_EQ(List.RowCount(), Count);
    }
    const TBoxAnswer Yes(IDYES);
    Press(Dialog.Find<TButton>(u"Button2"));
    Count -= C.Goes ? 1 : 0;
    EXPECT_EQ(List.RowCount(), Count) << "the others stay";
    EXPECT_EQ(RowOf(Dialog, C.Name) < 0, C.Goes);
    const TNames Files = Data.Backups();
    EXPECT_EQ(std::ranges::count(Files, C.Name), C.Goes ? 0 : 1);
    EXPECT_EQ(List.Selected() < 0, C.Goes);
    EXPECT_EQ(CanAct(Dialog), !C.Goes) << "only while a row is selected";
    EXPECT_FALSE(Dialog.Find<TControl>(u"Label_failure").Visible());
  }
}

TEST_F(RescueForm, ARowThatCanNotBeDeletedStaysAndTheDialogSaysWhy) {
  const std::u16string Name = u"backup20090715143001.reg";
  Write(Name, "REGEDIT4");
  Tfrm_rescue Dialog(Main, Bench);
  Dialog.Show();
  const HANDLE File = CreateFileW(Wide(Data.Paths.BackupFolderPath + Name), GENERIC_READ, 0,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(File, INVALID_HANDLE_VALUE);
  const auto PressDelete = [&Dialog] {
    const TBoxAnswer Yes(IDYES);
    Press(Dialog.Find<TButton>(u"Button2"));
  };
  PressDelete();
  const auto &Failure = Dialog.Find<TControl>(u"Label_failure");
  EXPECT_EQ(RowOf(Dialog, Name), 0);
  EXPECT_TRUE(Failure.Visible());
  EXPECT_TRUE(Failure.Text().starts_with(u"The backup could not be deleted: C:\\"))
      << ToUtf8(Failure.Text());
  CloseHandle(File);
  PressDelete();
  EXPECT_EQ(RowOf(Dialog, Name), -1);
  EXPECT_FALSE(Failure.Visible());
}

TEST_F(RescueForm, RestoresWithTheRegistryEditorAndListsWhatUndoesThat) {
  const std::u16string Name = MakeBackup();
  Write(u"backup20090715143001.reg", "REGEDIT4");
  Tfrm_rescue Dialog(Main, Bench);
  Dialog.Show();
  auto &List = Dialog.Find<TListView>(u"Lv_back");
  ASSERT_EQ(List.RowCount(), 2);
  PressRow(Dialog, RowOf(Dialog, Name));
  {
    const TBoxAnswer No(IDNO);
    Press(Dialog.Find<TButton>(u"Button1"));
    EXPECT_TRUE(CanAct(Dialog));
  }
  const TBoxAnswer Answers({IDYES, IDOK});
  Press(Dialog.Find<TButton>(u"Button1"));
  EXPECT_EQ(Answers.Texts(), (TNames{Ask, Success}));
  ASSERT_TRUE(WaitUntil([&] { return CanAct(Dialog); }));
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"one");
  EXPECT_EQ(List.RowCount(), 3) << "the restore can be undone";
  EXPECT_EQ(List.Selected(), RowOf(Dialog, Name));
  EXPECT_FALSE(Dialog.Find<TControl>(u"Label_failure").Visible());

  // A restore of the restore takes the value away again.
  int Own = 0;
  while (List.Cells(Own).Texts.back() == Name ||
         List.Cells(Own).Texts.back() == u"backup20090715143001.reg")
    ++Own;
  PressRow(Dialog, Own);
  const TBoxAnswer Again({IDYES, IDOK});
  Press(Dialog.Find<TButton>(u"Button1"));
  ASSERT_TRUE(WaitUntil([&] { return CanAct(Dialog); }));
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"");
}

TEST_F(RescueForm, SaysWhatARestoreCouldNotDo) {
  const std::u16string Text = u"[" + TTestCorner::KeyPath(u"A") + u"]\r\n\"x\"=\"two\"\r\n";
  Write(u"backup20090715143001.reg", "REGEDIT4\r\n\r\n" + ToUtf8(Text));
  const auto Restore = [](TForm &Dialog, std::vector<int> Buttons) {
    const TBoxAnswer Answers(std::move(Buttons));
    Press(Dialog.Find<TButton>(u"Button1"));
    EXPECT_TRUE(WaitUntil([&] { return CanAct(Dialog); }));
    return Answers.Texts();
  };
  const auto Shown = [](const TForm &Dialog) {
    const auto &Label = Dialog.Find<TControl>(u"Label_failure");
    return Label.Visible() ? Label.Text() : u"";
  };
  Tfrm_rescue Dialog(Main, Bench);
  Dialog.Show();
  // Without a record of what is there now it does not begin.
  std::u16string Folder = Data.Paths.UndoFolderPath;
  Folder.pop_back();
  RemoveDirectoryW(Wide(Folder));
  ASSERT_EQ(Bench.Platform.Storage->Write(Folder, "in the way"), TError());
  EXPECT_EQ(Restore(Dialog, {IDYES}), TNames{Ask}) << "no word of a success";
  EXPECT_TRUE(Shown(Dialog).starts_with(u"The backup was not restored completely: nothing was "))
      << ToUtf8(Shown(Dialog));
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"");
  Bench.Platform.Storage->Remove(Folder);
  // A text that came without a record brings back only what it holds.
  EXPECT_EQ(Restore(Dialog, {IDYES, IDOK}), (TNames{Ask, Success}));
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"two");
  EXPECT_TRUE(Shown(Dialog).starts_with(u"The backup was not restored completely: only what "))
      << ToUtf8(Shown(Dialog));
}

TEST_F(RescueForm, ClosingWaitsForTheEndOfARestore) {
  MakeBackup();
  bool Ended = false;
  Bench.Platform.Shell = std::make_unique<TSlowShell>(Ended);
  Tfrm_rescue Dialog(Main, Bench);
  Dialog.Show();
  const TBoxAnswer Answers({IDYES, IDOK});
  Press(Dialog.Find<TButton>(u"Button1"));
  EXPECT_EQ(Answers.Texts(), (TNames{Ask, Success})) << "nobody waits for the editor";
  EXPECT_FALSE(CanAct(Dialog)) << "one at a time";
  PressRow(Dialog, 0);
  EXPECT_FALSE(CanAct(Dialog));
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"");

  int Turns = 0;
  OnPump = [&] {
    EXPECT_TRUE(Dialog.Visible());
    Ended = ++Turns == 3;
  };
  Press(Dialog.Find<TButton>(u"Button3"));
  OnPump = nullptr;
  EXPECT_GE(Turns, 3);
  EXPECT_FALSE(Dialog.Visible());
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"one") << "the record did it, without the editor";
}

// A restore handles messages while it looks at what is there.
TEST_F(RescueForm, PressesInTheMiddleOfARestoreDoNotDisturbIt) {
  const std::u16string Name = MakeBackup();
  bool Ended = true;
  Bench.Platform.Shell = std::make_unique<TSlowShell>(Ended);
  Tfrm_rescue Dialog(Main, Bench);
  bool Pressed = false;
  OnPump = [&] {
    if (std::exchange(Pressed, true))
      return;
    for (const char16_t *const Button : {u"Button1", u"Button2", u"Button3"})
      Press(Dialog.Find<TButton>(Button));
    EXPECT_TRUE(Dialog.Visible());
  };
  const TBoxAnswer Answers({IDYES, IDOK});
  PostClick(Dialog.Find<TButton>(u"Button1"));
  EXPECT_TRUE(ShowModalForm(Dialog));
  OnPump = nullptr;
  EXPECT_TRUE(Pressed);
  EXPECT_EQ(Answers.Texts(), (TNames{Ask, Success}));
  EXPECT_FALSE(Dialog.Visible());
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"one");
  EXPECT_EQ(std::ranges::count(Data.Backups(), Name), 1);
}

} // namespace
} // namespace hivesweep
