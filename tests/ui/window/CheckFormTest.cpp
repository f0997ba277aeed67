// The dialog that scans and fixes: real presses, and what its controls show then.
#include <map>
#include <stdexcept>

#include <gtest/gtest.h>

#include "controls/Button.h"
#include "controls/ImageProgress.h"
#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "controls/Timer.h"
#include "controls/Win32.h"
#include "repair/Settings.h"
#include "tests/controls/User.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/CheckForm.h"

namespace hivesweep {
namespace {

using TNames = std::vector<std::u16string>;

// What the scanners of four areas do in the scan of a test.
struct TScript {
  std::map<int, int> Finds;             // problems by area
  std::function<void(int Area)> During; // when the area's problems have been reported
  std::map<int, int> Runs;
};
TScript Script;

template <int Area>
std::int32_t Scripted(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                      TGroupItems &Group) {
  if (Engine.Stopped)
    return 0;
  ++Script.Runs[Area];
  Engine.ShowStatus(StatusLabel, TProblemType::Font);
  ProgressBar.Advance();
  Engine.Pump();
  const int Count = Script.Finds[Area];
  for (int Number = 1; Number <= Count; ++Number)
    Engine.Report(Group, {.Label = TProblemType::Font,
                          .Action = TFixAction::RemoveKey,
                          .Area = Area,
                          .KeyPath = TTestCorner::KeyPath(ToDecimal(static_cast<unsigned>(Number))),
                          .ValueName = std::u16string(WholeKey),
                          .Data = {},
                          .BackupLines = {}});
  if (Script.During)
    Script.During(Area);
  return Count;
}

constexpr TScannerRow Rows[] = {
    {1, Scripted<1>}, {4, Scripted<4>}, {9, Scripted<9>}, {17, Scripted<17>}};

// A row's status with its picture: "2 Problems 20".
std::u16string Status(TForm &Dialog, int Row) {
  const TListCells Cells = Dialog.Find<TListView>(u"Lv_check").Cells(Row);
  const int Image = Cells.SubImages.empty() ? -1 : Cells.SubImages.front();
  return Cells.Texts.at(1) + (Image < 0 ? u"" : u" " + ToDecimal(static_cast<unsigned>(Image)));
}

TNames Statuses(TForm &Dialog) {
  TNames All;
  for (int Row = 0; Row < Dialog.Find<TListView>(u"Lv_check").RowCount(); ++Row)
    All.push_back(Status(Dialog, Row));
  return All;
}

class CheckForm : public testing::Test {
protected:
  CheckForm() {
    Script = {};
    SetDoubleClickTime(ShortTime);
    Main.Show();
  }
  ~CheckForm() override { SetDoubleClickTime(DoubleClickTime); }

  // Shows it over the main window and presses its button; until it is closed.
  static void RunModal(Tfrm_check &Dialog) {
    PostClick(Dialog.Find<TButton>(u"bt_scan"));
    EXPECT_TRUE(ShowModalForm(Dialog));
  }
  // As a user does who has seen what the button has become.
  static void PressLater(const TControl &Button) {
    Sleep(2 * ShortTime);
    Press(Button);
  }
  static constexpr UINT ShortTime = 20;
  const UINT DoubleClickTime = GetDoubleClickTime();
  TSettings Settings() { return {Bench.Platform, Data.Paths.MainIniPath}; }

  std::function<void()> OnPump;
  TTestBench Bench{Rows, WatchedPlatform(OnPump)};
  TTestData Data{Bench.Platform};
  TTestMain Main;
};

// ---- areas and their switches -----------------------------------------------------------

TEST_F(CheckForm, ShowsTheAreasWithTheirSwitchesAndTheirCaptions) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &List = Dialog.Find<TListView>(u"Lv_check");
  ASSERT_EQ(List.RowCount(), static_cast<int>(AreaCount));
  for (const TArea &Area : Areas) {
    const int Row = Area.Number - 1;
    EXPECT_EQ(Dialog.Find<TListView>(u"Lv_check").Cells(Row).Texts.front(), Area.Caption);
    EXPECT_EQ(List.Checked(Row), Area.OnByDefault) << Row;
  }
  EXPECT_EQ(Dialog.Find<TControl>(u"Label_Discraption").Text(),
            u"Select the areas you want Hivesweeep to scan for problems.");
  EXPECT_EQ(Dialog.Find<TButton>(u"bt_scan").Text(), u"Scan");
  EXPECT_TRUE(Dialog.Find<TButton>(u"bt_scan").Focused());
  for (const char16_t *const Hidden : {u"Lab_status", u"Lab_working", u"ImageProgress_1"})
    EXPECT_FALSE(Dialog.Find<TControl>(Hidden).Visible());
  EXPECT_FALSE(Dialog.Find<TTimer>(u"Timer1").Enabled());
}

TEST_F(CheckForm, SpeaksTheUsersLanguage) {
  TTestBench Shipped({}, WindowPlatform(SHIPPED_FOLDER));
  Shipped.Language.SetLanguage(u"German");
  Shipped.SelectedCount = 3;
  for (const TDialogMode Mode : {TDialogMode::Scan, TDialogMode::Fix}) {
    Shipped.DialogMode = Mode;
    Tfrm_check Dialog(Main, Shipped, Main);
    Dialog.Show();
    EXPECT_EQ(Dialog.Text(), u"Pr\u00fcfung und Reparatur");
    const std::u16string &Description = Dialog.Find<TControl>(u"Label_Discraption").Text();
    if (Mode == TDialogMode::Scan) {
      auto &List = Dialog.Find<TListView>(u"Lv_check");
      EXPECT_EQ(List.Cells(0).Texts.front(), u"ActiveX-Komponenten");
      EXPECT_EQ(List.Cells(16).Texts.front(), u"Tiefenpr\u00fcfung");
      EXPECT_EQ(List.ColumnCaption(0), u"Bereiche");
      EXPECT_EQ(Dialog.Find<TButton>(u"bt_scan").Text(), u"Pr\u00fcfen");
      EXPECT_TRUE(Description.starts_with(u"W\u00e4hlen Sie")) << ToUtf8(Description);
    } else {
      EXPECT_EQ(Dialog.Find<TButton>(u"bt_scan").Text(), u"Jetzt reparieren");
      EXPECT_TRUE(Description.starts_with(u"3 Probleme wurden")) << ToUtf8(Description);
    }
  }
}

TEST_F(CheckForm, KeepsEverySwitchAtOnceAndScansOnlyWhatIsChecked) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  auto &List = Dialog.Find<TListView>(u"Lv_check");
  const auto &Scan = Dialog.Find<TButton>(u"bt_scan");
  const auto PressBox = [&List](int Row) {
    const TRect Box = List.CheckBounds(Row);
    PressAt(List, {Box.Left + Box.Width / 2, Box.Top + Box.Height / 2});
  };
  // What another dialog, and the next start, will see.
  const auto Kept = [this] {
    std::u16string Flags;
    for (const bool On : ReadAreaSwitches(*Bench.Platform.Profiles, Data.Paths.MainIniPath))
      Flags.push_back(On ? u'1' : u'0');
    return Flags;
  };
  const struct {
    const char *Why;
    std::function<void()> Do;
    std::u16string_view Wanted;
  } Steps[] = {
      {"a press", [&] { PressBox(3); }, u"11101111111111110"},
      {"the space bar",
       [&] {
         List.Focus();
         List.Select(16);
         Type(VK_SPACE);
       },
       u"11101111111111111"},
      {"Deselect All", [&] { Dialog.Find<TMenuItem>(u"SelectAll2").Click(); },
       u"00000000000000000"},
      {"one alone", [&] { PressBox(8); }, u"00000000100000000"},
      {"and none", [&] { PressBox(8); }, u"00000000000000000"},
      {"Select All", [&] { Dialog.Find<TMenuItem>(u"SelectAll1").Click(); }, u"11111111111111111"},
      {"a press again", [&] { PressBox(0); }, u"01111111111111111"},
  };
  for (const auto &Step : Steps) {
    Step.Do();
    EXPECT_EQ(Kept(), Step.Wanted) << Step.Why;
    EXPECT_EQ(Scan.Enabled(), Step.Wanted.find(u'1') != std::u16string_view::npos) << Step.Why;
  }
  Tfrm_check Later(Main, Bench, Main);
  EXPECT_FALSE(Later.Find<TListView>(u"Lv_check").Checked(0));
  EXPECT_TRUE(Later.Find<TListView>(u"Lv_check").Checked(16));

  Press(Scan);
  EXPECT_EQ(Script.Runs, (std::map<int, int>{{4, 1}, {9, 1}, {17, 1}}));
  EXPECT_EQ(Status(Dialog, 0), u"") << "it was not scanned";
}

TEST_F(CheckForm, WithoutAnAreaItCanNotEvenBegin) {
  {
    Tfrm_check Dialog(Main, Bench, Main);
    Dialog.Show();
    Dialog.Find<TMenuItem>(u"SelectAll2").Click();
    Dialog.Close();
  }
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  EXPECT_FALSE(Dialog.Find<TButton>(u"bt_scan").Enabled());
  Type(VK_RETURN);
  EXPECT_EQ(Main.Happened, TNames{});
}

// ---- scans ------------------------------------------------------------------------------

TEST_F(CheckForm, AScanTellsWhatItFoundAreaByArea) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &Scan = Dialog.Find<TButton>(u"bt_scan");
  const auto &Label = Dialog.Find<TControl>(u"Lab_status");
  auto &Progress = Dialog.Find<TImageProgress>(u"ImageProgress_1");
  bool WasThere = false;
  Script.Finds = {{1, 2}, {4, 1}};
  // cppcheck-suppress danglingLifetime ; the script ends with the test
  Script.During = [&](int Area) {
    if (Area != 4)
      return;
    WasThere = true;
    const TNames Cells = Statuses(Dialog);
    EXPECT_EQ(TNames(Cells.begin(), Cells.begin() + 5),
              (TNames{u"2 Problems 20", u"No Problems 18", u"No Problems 18", u"      Scanning...",
                      u""}));
    EXPECT_EQ(Label.Text(), u"Scanning...Invalid Font");
    EXPECT_TRUE(Label.Visible());
    EXPECT_TRUE(Progress.Visible());
    EXPECT_FALSE(Dialog.Find<TControl>(u"Lab_working").Visible());
    EXPECT_EQ(Scan.Text(), u"Stop");
    EXPECT_TRUE(Dialog.Find<TTimer>(u"Timer1").Enabled());
    EXPECT_TRUE(Bench.Busy);
  };
  Press(Scan);
  ASSERT_TRUE(WasThere);
  TNames Wanted(AreaCount, u"No Problems 18");
  Wanted[0] = u"2 Problems 20";
  Wanted[3] = u"1 Problems 20";
  Wanted[16] = u"";
  EXPECT_EQ(Statuses(Dialog), Wanted);
  EXPECT_EQ(Label.Text(), u"Scan completed.");
  EXPECT_EQ(Progress.Filled(), Progress.Bounds().Width - 2);
  EXPECT_EQ(Scan.Text(), u"Scan");
  EXPECT_FALSE(Bench.Busy);
  EXPECT_EQ(Main.Happened,
            (TNames{u"BeginRun", u"ClearCounts", u"SetWelcome", u"EndRun of a scan"}));
  EXPECT_NE(Settings().Summary(u"none").LastScan, u"none");
  EXPECT_EQ(Settings().Summary(u"none").LastClean, u"none");
}

TEST_F(CheckForm, TellsTheMainWindowHowManyThereAreAndHowManyAreSelected) {
  const char16_t *const Found = u" problems were found. Click \"Start Fixing\" in the menu bar to "
                                u"fix the selected problems.";
  const struct {
    const char *Why;
    std::map<int, int> Finds;
    std::int32_t Selected;
    std::u16string Welcome;
    std::u16string FirstArea;
  } Cases[] = {
      {"high risks alone", {{1, 2}}, 0, u"2" + std::u16string(Found), u"2 Problems 20"},
      {"all risks", {{1, 1}, {4, 2}, {9, 1}}, 3, u"4" + std::u16string(Found), u"1 Problems 20"},
      {"nothing", {}, 0, u"No problems were found.", u"No Problems 18"},
  };
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  for (const auto &C : Cases) {
    Script.Finds = C.Finds;
    // cppcheck-suppress danglingLifetime ; the script ends with the test
    Script.During = [&](int Area) {
      if (Area == 1) {
        EXPECT_EQ(Status(Dialog, 3), u"") << "nothing is left of the scan before";
      }
    };
    Main.OnCall = [&](std::u16string_view What) {
      if (What == u"SetWelcome") {
        EXPECT_EQ(Status(Dialog, 15), u"No Problems 18") << "the last area has been told";
      }
    };
    Bench.SelectedCount = 77;
    Press(Dialog.Find<TButton>(u"bt_scan"));
    EXPECT_EQ(Bench.SelectedCount, C.Selected) << C.Why;
    EXPECT_EQ(Main.Welcome, C.Welcome) << C.Why;
    EXPECT_EQ(Status(Dialog, 0), C.FirstArea) << C.Why;
    EXPECT_EQ(Bench.Problems.ViewCount(), Bench.Problems.TotalCount()) << C.Why;
    for (const TItemInfo *Item : Bench.Problems.ViewItems()) {
      const bool IsHigh = Item->ImageIndex == u"1";
      EXPECT_EQ(Item->Checked, !IsHigh) << C.Why;
      EXPECT_EQ(Item->RiskText, IsHigh                     ? u"High-Risk"
                                : Item->ImageIndex == u"9" ? u"Medium-Risk"
                                                           : u"Low-Risk")
          << C.Why;
    }
  }
}

TEST_F(CheckForm, StopEndsAScanAndShowsWhatWasFoundUntilThen) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  auto &Progress = Dialog.Find<TImageProgress>(u"ImageProgress_1");
  int Filled = 0;
  const auto &Scan = Dialog.Find<TButton>(u"bt_scan");
  Script.Finds = {{4, 1}, {9, 5}};
  // cppcheck-suppress danglingLifetime ; the script ends with the test
  Script.During = [&](int Area) {
    if (Area != 4)
      return;
    // Without an area checked any more, Stop has to work all the same.
    Dialog.Find<TMenuItem>(u"SelectAll2").Click();
    EXPECT_TRUE(Scan.Enabled());
    PressLater(Scan);
    EXPECT_TRUE(Bench.Engine.Stopped);
    EXPECT_TRUE(Bench.Busy);
    Filled = Progress.Filled();
  };
  Press(Scan);
  TNames Wanted(AreaCount);
  Wanted[0] = Wanted[1] = Wanted[2] = u"No Problems 18";
  Wanted[3] = u"1 Problems 20";
  EXPECT_EQ(Statuses(Dialog), Wanted) << "nobody has looked into the areas behind";
  EXPECT_EQ(Script.Runs, (std::map<int, int>{{1, 1}, {4, 1}}));
  EXPECT_EQ(Bench.SelectedCount, 1);
  EXPECT_TRUE(Main.Welcome.starts_with(u"1 problems were found."));
  EXPECT_TRUE(Main.Welcome.ends_with(u"The scan was stopped, so the list is not complete."));
  EXPECT_EQ(Dialog.Find<TControl>(u"Lab_status").Text(), u"The scan was stopped.");
  EXPECT_EQ(Progress.Filled(), Filled);
  EXPECT_LT(Filled, Progress.Bounds().Width / 2);
  EXPECT_EQ(Settings().Summary(u"none").LastScan, u"none");
  EXPECT_EQ(std::count(Main.Happened.begin(), Main.Happened.end(), u"BeginRun"), 1);
  EXPECT_FALSE(Bench.Busy);
  EXPECT_TRUE(Dialog.Visible());
  EXPECT_EQ(Scan.Text(), u"Scan");
  EXPECT_FALSE(Scan.Enabled()) << "no area is checked any more";
}

TEST_F(CheckForm, ADoubleClickOnScanStopsNothing) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &Scan = Dialog.Find<TButton>(u"bt_scan");
  SetDoubleClickTime(5000);
  // cppcheck-suppress danglingLifetime ; the script ends with the test
  Script.During = [&](int) { Press(Scan); };
  Press(Scan);
  EXPECT_EQ(Script.Runs.size(), 3U) << "all areas that are on";
  EXPECT_EQ(Main.Welcome, u"No problems were found.");

  SetDoubleClickTime(ShortTime);
  // cppcheck-suppress danglingLifetime ; the script ends with the test
  Script.During = [&](int) { PressLater(Scan); };
  Press(Scan);
  EXPECT_EQ(Main.Welcome, u"The scan was stopped, so the list is not complete.");
}

TEST_F(CheckForm, AnAreaThatWasBrokenOffSaysSoAndWhatItHasListed) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  Script.Finds = {{4, 2}};
  Script.During = [](int Area) {
    if (Area != 9)
      throw std::runtime_error("broken hive");
  };
  Press(Dialog.Find<TButton>(u"bt_scan"));
  EXPECT_EQ(Status(Dialog, 0), u"Broken off: broken hive 20");
  EXPECT_EQ(Status(Dialog, 3), u"2 Problems. Broken off: broken hive 20");
  EXPECT_EQ(Status(Dialog, 8), u"No Problems 18");
  EXPECT_TRUE(Main.Welcome.starts_with(u"2 problems were found.")) << ToUtf8(Main.Welcome);
  EXPECT_TRUE(Main.Welcome.ends_with(u"so the list is not complete.")) << ToUtf8(Main.Welcome);
}

TEST_F(CheckForm, AScanWithoutTheIgnoreListSaysWhyNothingIsSelected) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  const std::u16string &Ignore = Data.Paths.IgnoreIniPath;
  ASSERT_TRUE(CreateDirectoryW(Wide(Ignore), nullptr)); // what can't be read as a file
  Script.Finds = {{4, 2}};
  Press(Dialog.Find<TButton>(u"bt_scan"));
  EXPECT_EQ(Bench.SelectedCount, 0);
  EXPECT_TRUE(Main.Welcome.starts_with(u"2 problems were found.")) << ToUtf8(Main.Welcome);
  EXPECT_NE(Main.Welcome.find(u"Nothing is selected, because"), std::u16string::npos);
  EXPECT_NE(Main.Welcome.find(Ignore), std::u16string::npos) << ToUtf8(Main.Welcome);
  EXPECT_TRUE(RemoveDirectoryW(Wide(Ignore)));
}

TEST_F(CheckForm, WhatAHandlerThrowsInAScanIsNoFailureOfAnArea) {
  struct TThrowing final : TTestMain {
    TAnswer Receive(const TMessage &Message) override {
      if (Message.Id == WM_APP)
        throw std::runtime_error("a handler");
      return TForm::Receive(Message);
    }
  } Other;
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  // cppcheck-suppress danglingLifetime ; the script ends with the test
  Script.During = [&](int Area) {
    if (Area != 4)
      return;
    PostMessageW(Other.Handle(), WM_APP, 0, 0);
    Sleep(ShortTime); // the window's pump handles messages once per tick
    Bench.Engine.Pump();
  };
  EXPECT_THROW(Press(Dialog.Find<TButton>(u"bt_scan")), std::runtime_error);
  EXPECT_EQ(Script.Runs, (std::map<int, int>{{1, 1}, {4, 1}})) << "it stopped";
  for (const TAreaResult &Area : Bench.Engine.AreaResults())
    EXPECT_EQ(Area.Failure, u"");
  EXPECT_FALSE(Bench.Busy);
  EXPECT_EQ(Main.Happened.back(), u"EndRun of a scan");
}

TEST_F(CheckForm, ClosingStopsAScanAndWaitsForItsEnd) {
  const struct {
    const char *Why;
    void (*Ask)(TForm &Dialog);
  } Cases[] = {
      {"the close button", [](TForm &Dialog) { PostClick(Dialog.Find<TButton>(u"Bt_close")); }},
      {"Escape", [](TForm &) { PostKey(VK_ESCAPE); }},
      {"the close box", [](TForm &Dialog) { PostMessageW(Dialog.Handle(), WM_CLOSE, 0, 0); }},
  };
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Why);
    Script = {};
    Main.Happened.clear();
    Tfrm_check Dialog(Main, Bench, Main);
    // cppcheck-suppress danglingLifetime ; the script ends with the test
    Script.During = [&](int Area) {
      ASSERT_EQ(Area, 1);
      C.Ask(Dialog);
      PumpMessages();
      EXPECT_TRUE(Bench.Engine.Stopped);
      EXPECT_TRUE(Dialog.Visible()) << "the scan still works with it";
      EXPECT_FALSE(IsWindowEnabled(Main.Handle()));
    };
    RunModal(Dialog);
    EXPECT_EQ(Script.Runs, (std::map<int, int>{{1, 1}}));
    EXPECT_FALSE(Bench.Busy);
    EXPECT_FALSE(Dialog.Visible());
    ASSERT_FALSE(Main.Happened.empty());
    EXPECT_EQ(Main.Happened.back(), u"EndRun of a scan");
  }
}

TEST_F(CheckForm, AnErrorEndsTheRunAndCanBeFollowedByAnother) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &Scan = Dialog.Find<TButton>(u"bt_scan");
  Main.OnCall = [](std::u16string_view What) {
    if (What == u"ClearCounts")
      throw std::runtime_error("no counts");
  };
  EXPECT_THROW(Press(Scan), std::runtime_error);
  EXPECT_FALSE(Bench.Busy);
  EXPECT_EQ(Scan.Text(), u"Scan");
  EXPECT_EQ(Main.Happened.back(), u"EndRun of a scan");
  EXPECT_NE(Dialog.Find<TControl>(u"Lab_status").Text(), u"Scan completed.");
  Main.OnCall = nullptr;
  Press(Scan);
  EXPECT_EQ(Dialog.Find<TControl>(u"Lab_status").Text(), u"Scan completed.");
}

// ---- fixes ------------------------------------------------------------------------------

class FixDialog : public CheckForm {
protected:
  FixDialog() {
    Bench.DialogMode = TDialogMode::Fix;
    Corner.SetText(u"A", u"x", u"one");
    Corner.SetText(u"A", u"y", u"two");
    Corner.SetText(u"B\\Below", u"z", u"three");
    Corner.SetText(u"C", u"x", u"four");
    Bench.AddProblem(4, TTestCorner::KeyPath(u"A")).ValueName = u"x";
    Bench.AddProblem(4, TTestCorner::KeyPath(u"B"));
    Bench.AddProblem(1, TTestCorner::KeyPath(u"C")).Checked = false;
    Bench.Engine.BackupText = {u"[" + TTestCorner::KeyPath(u"A") + u"]", u"\"x\"=\"one\""};
    Bench.SelectedCount = 2;
  }

  // Which of the four values are still there.
  std::u16string Left() {
    return Corner.Text(u"A", u"x") + u" " + Corner.Text(u"A", u"y") + u" " +
           Corner.Text(u"B\\Below", u"z") + u" " + Corner.Text(u"C", u"x");
  }

  TTestCorner Corner{*Bench.Platform.Registry};
};

TEST_F(FixDialog, BacksUpThenRemovesWhatIsSelectedAndTellsEachStep) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &Fix = Dialog.Find<TButton>(u"bt_scan");
  const auto &Working = Dialog.Find<TControl>(u"Lab_working");
  const auto &Label = Dialog.Find<TControl>(u"Lab_status");
  EXPECT_FALSE(Dialog.Find<TControl>(u"Lv_check").Visible());
  EXPECT_EQ(Fix.Text(), u"Fix Now");
  EXPECT_EQ(
      Dialog.Find<TControl>(u"Label_Discraption").Text(),
      u"2 problems were selected for fixing. Click \"Fix Now\" to fix the selected problems.");
  for (const TControl *Hidden : {&Working, &Label})
    EXPECT_FALSE(Hidden->Visible());

  TNames Told;
  OnPump = [&] {
    EXPECT_TRUE(Working.Visible());
    EXPECT_FALSE(Label.Visible());
    EXPECT_TRUE(Dialog.Find<TControl>(u"ImageProgress_1").Visible());
    EXPECT_EQ(Fix.Text(), u"Stop");
    EXPECT_TRUE(Bench.Busy);
    if (Told.empty() || Told.back() != Working.Text())
      Told.push_back(Working.Text());
  };
  Press(Fix);
  OnPump = nullptr;
  EXPECT_EQ(Told, (TNames{u"Backup data...", u"Fixing..."}));
  EXPECT_TRUE(Label.Visible());
  EXPECT_EQ(Label.Text(), u"Repaired successfully.");
  EXPECT_FALSE(Working.Visible());
  EXPECT_EQ(Left(), u" two  four") << "what was not selected stays";
  ASSERT_EQ(Data.Backups().size(), 1U);
  EXPECT_TRUE(Data.Backups().front().starts_with(u"backup"));
  EXPECT_EQ(Bench.Problems.TotalCount(), 1);
  EXPECT_EQ(Bench.SelectedCount, 0);
  EXPECT_EQ(Main.Welcome, u"2 problems were fixed. If you want to restore, you can click "
                          u"\"Restore\" in the menu bar to restore.");
  EXPECT_EQ(Main.Happened, (TNames{u"BeginRun", u"SetWelcome", u"EndRun of a fix"}));
  EXPECT_EQ(Settings().Summary(u"").Total, 2);
  EXPECT_EQ(Fix.Text(), u"Fix Now");
  EXPECT_FALSE(Fix.Enabled()) << "nothing is left to do";
  EXPECT_FALSE(Bench.Busy);
}

TEST_F(FixDialog, WithoutABackupNothingIsRemovedAndNothingIsCalledASuccess) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  std::u16string Folder = Data.Paths.BackupFolderPath;
  Folder.pop_back();
  ASSERT_TRUE(RemoveDirectoryW(Wide(Folder)));
  ASSERT_EQ(Bench.Platform.Storage->Write(Folder, "in the way"), TError());
  Press(Dialog.Find<TButton>(u"bt_scan"));
  EXPECT_EQ(Left(), u"one two three four");
  const auto &Label = Dialog.Find<TControl>(u"Lab_status");
  EXPECT_TRUE(Label.Visible());
  EXPECT_TRUE(Label.Text().starts_with(u"Nothing was fixed, because no backup could be written: "))
      << ToUtf8(Label.Text());
  EXPECT_EQ(Main.Happened, (TNames{u"BeginRun", u"EndRun of a fix"}));
  EXPECT_EQ(Settings().Summary(u"").Total, 0);
  EXPECT_EQ(Settings().Summary(u"none").LastClean, u"none");
  EXPECT_EQ(Bench.SelectedCount, 2);

  Bench.Platform.Storage->Remove(Folder);
  const std::u16string &Ignore = Data.Paths.IgnoreIniPath;
  ASSERT_TRUE(CreateDirectoryW(Wide(Ignore), nullptr)); // what can't be read as a file
  Press(Dialog.Find<TButton>(u"bt_scan"));
  EXPECT_TRUE(Label.Text().starts_with(
      u"Nothing was fixed, because the ignore list could not be read: " + Ignore))
      << ToUtf8(Label.Text());
  EXPECT_EQ(Left(), u"one two three four");

  ASSERT_TRUE(RemoveDirectoryW(Wide(Ignore)));
  EXPECT_TRUE(Dialog.Find<TButton>(u"bt_scan").Enabled()) << "another try";
  Press(Dialog.Find<TButton>(u"bt_scan"));
  EXPECT_EQ(Left(), u" two  four");
  EXPECT_EQ(Label.Text(), u"Repaired successfully.");
}

TEST_F(FixDialog, TheEndOfTheSessionEndsAFixWithItsBackupWhole) {
  Tfrm_check Dialog(Main, Bench, Main);
  Dialog.Show();
  bool Asked = false;
  OnPump = [&] {
    if (Asked || Bench.Problems.TotalCount() != 2)
      return;
    Asked = true;
    EXPECT_TRUE(SendMessageW(Dialog.Handle(), WM_QUERYENDSESSION, 0, 0)) << "it may end";
  };
  Press(Dialog.Find<TButton>(u"bt_scan"));
  OnPump = nullptr;
  EXPECT_TRUE(Asked);
  EXPECT_EQ(Bench.Problems.TotalCount(), 2) << "no other problem was begun";
  ASSERT_EQ(Data.Backups().size(), 1U);
  EXPECT_TRUE(Data.Backups().front().starts_with(u"backup"));
  EXPECT_EQ(Settings().Summary(u"").Total, 1);
}

TEST_F(FixDialog, StopAndCloseEndAFixBetweenTwoProblems) {
  const struct {
    const char *Why;
    const char16_t *Button;
    std::function<bool(const TForm &Dialog)> When;
    std::int32_t Fixed;
  } Cases[] = {
      {"before the backup is made", u"bt_scan",
       [](const TForm &Dialog) {
         return Dialog.Find<TControl>(u"Lab_working").Text() == u"Backup data...";
       },
       0},
      {"while the backup is made", u"Bt_close",
       [Calls = 0](const TForm &) mutable { return ++Calls == 3; }, 0},
      {"behind the first problem", u"bt_scan",
       [this](const TForm &) { return Bench.Problems.TotalCount() == 2; }, 1},
      {"closed behind the first that is left", u"Bt_close",
       [this](const TForm &) { return Bench.Problems.TotalCount() == 1; }, 1},
  };
  std::int32_t Total = 0;
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Why);
    Main.Happened.clear();
    Main.Welcome.clear();
    const std::int32_t Before = Bench.Problems.TotalCount();
    Tfrm_check Dialog(Main, Bench, Main);
    bool Asked = false;
    OnPump = [&] {
      if (Asked || !C.When(Dialog))
        return;
      Asked = true;
      PressLater(Dialog.Find<TButton>(C.Button));
      EXPECT_TRUE(Dialog.Visible()) << "the fix still works with it";
    };
    RunModal(Dialog);
    OnPump = nullptr;
    EXPECT_TRUE(Asked);
    EXPECT_FALSE(Bench.Busy);
    EXPECT_EQ(Before - Bench.Problems.TotalCount(), C.Fixed);
    EXPECT_EQ(Bench.SelectedCount, Bench.Problems.CheckedCount());
    EXPECT_EQ(Main.Welcome.empty(), C.Fixed == 0);
    EXPECT_EQ(Main.Happened.back(), u"EndRun of a fix");
    Total += C.Fixed;
    EXPECT_EQ(Settings().Summary(u"").Total, Total);
  }
  EXPECT_EQ(Left(), u" two  four");
}

} // namespace
} // namespace hivesweep
