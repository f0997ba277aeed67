// The main window, as a user works with it.
#include <gtest/gtest.h>

#include "controls/CheckBox.h"
#include "controls/MenuItem.h"
#include "controls/Panel.h"
#include "controls/Win32.h"
#include "repair/UndoStore.h"
#include "tests/controls/User.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/MainForm.h"

namespace hivesweep {
namespace {

using TTexts = std::vector<std::u16string>;

// Remembers what it was asked to start.
class TTestShell final : public TShell {
public:
  explicit TTestShell(TTexts &Started) : Started_(Started) {}
  bool Open(std::u16string_view Target, std::u16string_view Parameters) override {
    Started_.push_back(std::u16string(Target).append(u"|").append(Parameters));
    return true;
  }
  std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                  std::u16string_view Parameters) override {
    Open(Target, Parameters);
    return nullptr;
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view) override {
    return std::nullopt;
  }

private:
  TTexts &Started_;
};

class MainWindow : public testing::Test {
protected:
  MainWindow() {
    Bench.Platform.Shell = std::make_unique<TTestShell>(Started);
    Main.Show();
    PumpMessages();
  }

  // Fonts: three, all checked; software: two; a shortcut; and one of high risk.
  void Fill() {
    Main.BeginRun();
    Bench.AddProblem(1, u"HKEY_CLASSES_ROOT\\CLSID\\{1}", u"ActiveX and Class Issues");
    Bench.AddProblem(4, u"HKEY_LOCAL_MACHINE\\Fonts\\b", u"Invalid Font").Data = u"C:\\b.ttf";
    Bench.AddProblem(4, u"HKEY_LOCAL_MACHINE\\Fonts\\C", u"Invalid Font");
    Bench.AddProblem(4, u"HKEY_LOCAL_MACHINE\\Fonts\\a", u"Invalid Font").ValueName = u"Arial";
    Bench.AddProblem(8, u"H:\\old\\tool.lnk", u"Invalid Shortcut File").Data = u"H:\\old\\tool.lnk";
    Bench.AddProblem(9, u"HKEY_CURRENT_USER\\Software\\One", u"Obsolete Software");
    Bench.AddProblem(9, u"HKEY_CURRENT_USER\\Software\\Two", u"Obsolete Software");
    Bench.Problems.BuildView(u"");
    GradeRisks(
        Bench.Problems, Bench.RiskTexts(), [](auto) { return false; }, [] { return true; });
    Main.EndRun(true);
    PumpMessages();
  }

  const std::u16string &Text(const std::u16string &Name) {
    return Main.Find<TControl>(Name).Text();
  }
  const std::u16string &Panel(int Index) {
    return Main.Find<TStatusBar>(u"dxStatusBar1").PanelText(Index);
  }
  void PressOn(const std::u16string &Name) { Press(Main.Find<TControl>(Name)); }
  void PostChoice(const std::u16string &Entry) {
    PostMessageW(Main.Handle(), WM_COMMAND, Main.Find<TMenuItem>(Entry).Command(), 0);
  }
  void Choose(const std::u16string &Entry) {
    PostChoice(Entry);
    PumpMessages();
  }
  void Use(const std::u16string &Name) {
    if (dynamic_cast<TMenuItem *>(Main.FindComponent(Name)))
      Choose(Name);
    else
      PressOn(Name);
  }
  void PressRow(int Row) {
    const TRect Place = List.RowBounds(Row);
    PressAt(List, {Place.Left + 200, Place.Top + Place.Height / 2});
  }
  void PressBox(int Row) {
    const TRect Box = List.CheckBounds(Row);
    PressAt(List, {Box.Left + Box.Width / 2, Box.Top + Box.Height / 2});
  }
  void PressHeader(int Column) {
    int X = 20;
    for (int Before = 0; Before < Column; ++Before)
      X += List.ColumnWidth(Before);
    const auto Header = reinterpret_cast<HWND>(SendMessageW(List.Handle(), LVM_GETHEADER, 0, 0));
    PostMessageW(Header, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(X, 8));
    PostMessageW(Header, WM_LBUTTONUP, 0, MAKELPARAM(X, 8));
    PumpMessages();
  }

  // What the list shows: the last letter of each key, and a "+" behind a checked one.
  std::u16string Rows() {
    std::u16string All;
    for (int Row = 0; Row < List.RowCount(); ++Row) {
      const TListCells Cells = List.Cells(Row);
      All += Cells.Texts.at(2).back();
      if (Cells.Checked)
        All += u'+';
    }
    return All;
  }
  bool ShowsProblem() { return Main.Find<TLabel>(u"Lab_ms").IsLink(); }

  TTexts Started;
  TTestBench Bench;
  TLook Look;
  Tfrm_main Main{Look, Bench};
  TListView &List = Main.Find<TListView>(u"Lv_problems");
};

TEST_F(MainWindow, StartsWithTheSummary) {
  EXPECT_EQ(Text(u"Lab_reg"), u"Hivesweep");
  EXPECT_TRUE(Main.Find<TPanel>(u"Panel_summary").Visible());
  EXPECT_FALSE(Main.Find<TLabel>(u"Lab_ms").Visible());
  EXPECT_EQ(Text(u"Lab_scanvalue"), u"None");
  EXPECT_EQ(Text(u"Lab_totalvalue"), u"0");
  EXPECT_EQ(Text(u"Lab_count"), u"0");
  EXPECT_EQ(List.ColumnCaption(0), u"      Type");
  EXPECT_EQ(Rows(), u"");
  // Nothing in an empty list can be done anything with.
  PressHeader(1);
  for (const char16_t *Entry :
       {u"checkall1", u"InverseSelection1", u"IgnoredProblem1", u"Jumptoentry1"})
    Choose(Entry);
  EXPECT_EQ(Started, TTexts{});
  EXPECT_EQ(Panel(1), u"0 problems selected for fixing");
}

TEST_F(MainWindow, TellsAtItsStartOfARestoreThatWasBrokenOff) {
  const TTestData Data(Bench.Platform);
  TUndoRecord Record;
  Record.Kind = TUndoKind::Restore;
  Record.ViewBits = ThisView();
  Record.Finished = false;
  Record.Goal.emplace().BackupName = u"backup1.reg";
  TUndoFile File;
  ASSERT_EQ(
      TUndoStore(*Bench.Platform.Storage, Data.Paths.UndoFolderPath, Data.Paths.BackupFolderPath)
          .Save(Record, u"backup2.reg", File),
      TError());
  Tfrm_main Again(Look, Bench);
  Again.Show();
  EXPECT_TRUE(Again.Find<TControl>(u"Lab_welcome")
                  .Text()
                  .starts_with(u"the restore of backup1.reg was interrupted"));
}

TEST_F(MainWindow, EachMemberOfACategorysFamilyShowsIt) {
  Fill();
  for (const char16_t *Member : {u"ImageNote_5", u"Label_5", u"lab_5", u"Image_5", u"dxb_5"}) {
    PressOn(u"ImageNote_1");
    EXPECT_EQ(List.RowCount(), 7);
    Use(Member);
    EXPECT_EQ(Rows(), u"b+C+a+") << ToUtf8(Member);
    EXPECT_EQ(Text(u"Lab_reg"), u"Fonts");
    EXPECT_EQ(Text(u"Lab_count"), u"3");
    EXPECT_TRUE(Text(u"Lab_ms").starts_with(u"The entries of Windows fonts"));
    EXPECT_TRUE(Main.Find<TLabel>(u"Lab_ms").Visible());
    EXPECT_FALSE(Main.Find<TPanel>(u"Panel_summary").Visible());
    for (int Category = SummaryCategory; Category <= CategoryCount; ++Category) {
      const bool Chosen = Category == 5;
      EXPECT_EQ(Main.Find<TImageNote>(NameOf(u"ImageNote_", Category)).Selected(), Chosen);
      EXPECT_EQ(Main.Find<TLabel>(NameOf(u"Label_", Category)).Color(),
                Chosen ? TColorRole::PaneSelectedText : TColorRole::PaneText);
    }
  }
}

TEST_F(MainWindow, EveryCategoryShowsItsOwnProblems) {
  for (const TArea &Area : Areas)
    for (int Each = 0; Each < Area.Number; ++Each)
      Bench.AddProblem(Area.Number, u"HKEY_CURRENT_USER\\" + std::u16string(Area.Caption));
  Main.EndRun(true);
  EXPECT_EQ(Text(u"lab_1"), u"(153)");
  EXPECT_EQ(Panel(0), u"153 problems found");
  for (const TArea &Area : Areas) {
    const int Category = Area.Number + 1;
    PressOn(NameOf(u"ImageNote_", Category));
    EXPECT_EQ(Text(u"Lab_reg"), Area.Caption);
    EXPECT_EQ(Text(NameOf(u"lab_", Category)), CountCaption(Area.Number));
    EXPECT_EQ(Text(u"Lab_count"), ToDecimal(static_cast<unsigned>(Area.Number)));
    EXPECT_EQ(Text(u"Lab_ms"), AreaDescriptions[AreaIndex(Area.Number)].English);
    ASSERT_EQ(List.RowCount(), Area.Number);
    EXPECT_EQ(List.Cells(0).Texts.at(2), u"HKEY_CURRENT_USER\\" + std::u16string(Area.Caption));
    EXPECT_EQ(List.Cells(0).Image, Area.Number);
  }
}

TEST_F(MainWindow, ACategoryWithoutProblemsShowsNone) {
  Fill();
  EXPECT_EQ(Text(u"lab_6"), u"");
  PressOn(u"Label_6");
  EXPECT_EQ(List.RowCount(), 0);
  EXPECT_EQ(Text(u"Lab_count"), u"0");
  // What is not shown is not selected either.
  Choose(u"Nonechecked1");
  EXPECT_EQ(Panel(1), u"6 problems selected for fixing");
}

TEST_F(MainWindow, ACategoryThatIsShownKeepsItsRows) {
  Fill();
  PressOn(u"Label_5");
  PressHeader(2);
  EXPECT_EQ(Rows(), u"a+b+C+");
  PressRow(1);
  PressOn(u"Label_5");
  EXPECT_EQ(Rows(), u"a+b+C+") << "not built anew";
  EXPECT_FALSE(ShowsProblem()) << "but it tells of itself again";
  PressOn(u"Label_1");
  PressOn(u"Label_5");
  EXPECT_EQ(Rows(), u"b+C+a+");
}

TEST_F(MainWindow, OneDirectionServesAllColumns) {
  Fill();
  PressOn(u"Label_5");
  const struct {
    int Column;
    const char16_t *Rows;
  } Presses[] = {{2, u"a+b+C+"}, {2, u"C+b+a+"}, {0, nullptr}, {2, u"C+b+a+"}, {2, u"a+b+C+"}};
  for (const auto &P : Presses) {
    PressHeader(P.Column);
    if (P.Rows) {
      EXPECT_EQ(Rows(), P.Rows);
    }
  }
  // The problem that is selected stays so, wherever it goes.
  PressRow(0);
  PressHeader(2);
  EXPECT_EQ(Rows(), u"C+b+a+");
  EXPECT_EQ(List.Selected(), 2);
}

TEST_F(MainWindow, APressOnTheBoxChangesOneCheckMark) {
  Fill();
  EXPECT_EQ(Panel(0), u"7 problems found");
  EXPECT_EQ(Panel(1), u"6 problems selected for fixing") << "not those of high risk";
  PressBox(0);
  EXPECT_EQ(Panel(1), u"7 problems selected for fixing");
  EXPECT_TRUE(Main.Find<TCheckBox>(u"CheckBox_selectall").Checked()) << "all are, now";
  PressBox(1);
  PressBox(2);
  EXPECT_EQ(Panel(1), u"5 problems selected for fixing");
  EXPECT_EQ(Bench.Problems.CheckedCount(), 5);
  EXPECT_EQ(Bench.SelectedCount, 5);
  EXPECT_FALSE(ShowsProblem());
  // Next to the box is the row.
  const TRect Box = List.CheckBounds(3);
  PressAt(List, {Box.Right() + 1, Box.Top + 5});
  EXPECT_EQ(Panel(1), u"5 problems selected for fixing");
  EXPECT_TRUE(ShowsProblem());
  List.Focus();
  Type(VK_SPACE);
  EXPECT_EQ(Panel(1), u"4 problems selected for fixing") << "by the keyboard";
}

TEST_F(MainWindow, SelectsWhatIsShownAndLeavesTheRest) {
  Fill();
  PressOn(u"Label_5");
  PressBox(0);
  const struct {
    const char16_t *Entry;
    const char16_t *Rows;
    const char16_t *Panel;
    bool Box;
  } Cases[] = {{u"InverseSelection1", u"b+Ca", u"4 problems selected for fixing", false},
               {u"checkall1", u"b+C+a+", u"6 problems selected for fixing", true},
               {u"Nonechecked1", u"bCa", u"3 problems selected for fixing", false},
               {u"CheckBox_selectall", u"b+C+a+", u"6 problems selected for fixing", true},
               {u"CheckBox_selectall", u"bCa", u"3 problems selected for fixing", false}};
  for (const auto &C : Cases) {
    Use(C.Entry);
    EXPECT_EQ(Rows(), C.Rows) << ToUtf8(C.Entry);
    EXPECT_EQ(Panel(1), C.Panel) << ToUtf8(C.Entry);
    EXPECT_EQ(Main.Find<TCheckBox>(u"CheckBox_selectall").Checked(), C.Box) << ToUtf8(C.Entry);
  }
  PressOn(u"Label_10");
  EXPECT_FALSE(Rows().empty());
  EXPECT_TRUE(Main.Find<TCheckBox>(u"CheckBox_selectall").Checked()) << "of these rows";
}

TEST_F(MainWindow, ShowsWhatIsKnownOfAProblem) {
  Fill();
  auto &Item = Bench.AddProblem(4, u"HKEY_CURRENT_USER\\" + std::u16string(500, u'W'), u"Long");
  Item.Data = std::u16string(500, u'W');
  Item.TypeName = std::u16string(500, u'W');
  Main.EndRun(true);
  PressOn(u"Label_5");
  const TSize Least = Main.LeastClientSize();
  PressRow(3);
  EXPECT_EQ(Main.LeastClientSize().Width, Least.Width) << "no data makes the window grow";
  PressRow(2);
  EXPECT_EQ(Text(u"Lab_reg"), u"Invalid Font");
  EXPECT_EQ(Text(u"Lab_value"), u"Arial");
  EXPECT_EQ(Text(u"Lab_data"), u"");
  EXPECT_EQ(Text(u"Lab_ms"), u"HKEY_LOCAL_MACHINE\\Fonts\\a");
  EXPECT_TRUE(ShowsProblem());
  EXPECT_EQ(Main.Find<TLabel>(u"Lab_ms").Design(), LinkPlace);
  EXPECT_TRUE(Main.Find<TLabel>(u"Lab_pathcaption").Visible());
  List.Focus();
  Type(VK_UP);
  Type(VK_UP);
  EXPECT_EQ(Text(u"Lab_data"), u"C:\\b.ttf") << "by the keyboard";
  PressOn(u"Label_10");
  EXPECT_FALSE(ShowsProblem());
  EXPECT_EQ(Main.Find<TLabel>(u"Lab_ms").Design(), DescriptionPlace);
  EXPECT_FALSE(Main.Find<TLabel>(u"Lab_pathcaption").Visible());
  EXPECT_EQ(List.Selected(), -1);
}

TEST_F(MainWindow, HidesDescriptionsAndNothingElse) {
  Fill();
  const auto &Label = Main.Find<TLabel>(u"Lab_ms");
  const auto &Entry = Main.Find<TMenuItem>(u"dxBarButton9");
  PressOn(u"Label_5");
  EXPECT_TRUE(Entry.Checked());
  Choose(u"dxBarButton9");
  EXPECT_FALSE(Label.Visible());
  EXPECT_FALSE(Entry.Checked());
  PressOn(u"Label_10");
  EXPECT_FALSE(Label.Visible());
  PressRow(0);
  EXPECT_TRUE(Label.Visible()) << "a path is no description";
  Choose(u"dxBarButton9");
  PressOn(u"Label_5");
  EXPECT_TRUE(Label.Visible());
  EXPECT_TRUE(Entry.Checked());
}

TEST_F(MainWindow, OpensTheEditorForKeysAndTheExplorerForFiles) {
  Fill();
  PressOn(u"Lab_ms"); // not there
  PressOn(u"Label_9");
  PressOn(u"Lab_ms"); // a description
  EXPECT_EQ(Started, TTexts{});
  PressRow(0);
  const std::u16string Explorer = u"explorer| /select,H:\\old\\tool.lnk";
  Choose(u"Jumptoentry1");
  PressAt(Main.Find<TControl>(u"Lab_ms"), {10, 8});
  EXPECT_EQ(Started, (TTexts{Explorer, Explorer})) << "a drive H: is no key";
  PressOn(u"Label_10");
  PressRow(0);
  Choose(u"Jumptoentry1");
  PressAt(Main.Find<TControl>(u"Lab_ms"), {10, 8});
  ASSERT_EQ(Started.size(), 4u);
  EXPECT_TRUE(Started[2].starts_with(u"regedit.exe|"));
  EXPECT_TRUE(Started[3].starts_with(u"regedit.exe|"));
}

TEST_F(MainWindow, OpensTheManualByMenuAndByKey) {
  Choose(u"dxBarButton10");
  Type(VK_F1);
  ASSERT_EQ(Started.size(), 2u);
  EXPECT_NE(Started[0].find(u"Manual.html"), std::u16string::npos);
  EXPECT_EQ(Started[1], Started[0]);
}

TEST_F(MainWindow, ThePopupOffersWhatTheSelectionAllows) {
  Fill();
  const auto Offered = [&] {
    PostMessageW(List.Handle(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List.Handle()), -1);
    PostKey(VK_ESCAPE);
    PumpMessages();
    return Main.Find<TMenuItem>(u"Jumptoentry1").Enabled() &&
           Main.Find<TMenuItem>(u"IgnoredProblem1").Enabled();
  };
  List.Focus();
  EXPECT_FALSE(Offered());
  List.Select(2); // as the right button does
  EXPECT_TRUE(Offered());
  EXPECT_TRUE(ShowsProblem()) << "of the row that the menu is for";
  EXPECT_EQ(Text(u"Lab_ms"), u"HKEY_LOCAL_MACHINE\\Fonts\\C");
}

TEST_F(MainWindow, IgnoresTheSelectedProblem) {
  Fill();
  PressOn(u"Label_5");
  PressHeader(2);
  PressBox(1);
  EXPECT_EQ(Rows(), u"a+bC+");
  List.Select(-1);
  Choose(u"IgnoredProblem1");
  EXPECT_EQ(List.RowCount(), 3) << "no row is selected";
  TRegistryClean Clean(Bench.Platform);
  const struct {
    int Row;
    const char16_t *Key;
    const char16_t *Rows;
    const char16_t *Panel;
    int Selected;
  } Cases[] = {
      {1, u"HKEY_LOCAL_MACHINE\\Fonts\\b", u"a+C+", u"5 problems selected for fixing", 1},
      {1, u"HKEY_LOCAL_MACHINE\\Fonts\\C", u"a+", u"4 problems selected for fixing", 0},
      {0, u"HKEY_LOCAL_MACHINE\\Fonts\\a", u"", u"3 problems selected for fixing", -1},
  };
  for (const auto &C : Cases) {
    PressRow(C.Row);
    EXPECT_FALSE(Clean.IgnoreList.Contains(C.Key));
    Choose(u"IgnoredProblem1");
    EXPECT_TRUE(Clean.IgnoreList.Contains(C.Key));
    EXPECT_EQ(Rows(), C.Rows) << "in their order";
    EXPECT_EQ(Panel(1), C.Panel);
    EXPECT_EQ(List.Selected(), C.Selected);
    EXPECT_EQ(ShowsProblem(), C.Selected >= 0);
  }
  EXPECT_EQ(Text(u"lab_5"), u"");
  EXPECT_EQ(Text(u"lab_1"), u"(4)");
  EXPECT_EQ(Text(u"Lab_count"), u"0");
  EXPECT_EQ(Panel(0), u"4 problems found");
  EXPECT_EQ(Bench.Problems.TotalCount(), 4);
}

TEST_F(MainWindow, AProblemThatCannotBeIgnoredStays) {
  Fill();
  Bench.AddProblem(4, u"HKEY_CURRENT_USER\\a=b", u"Invalid Font");
  Main.EndRun(true);
  PressOn(u"Label_5");
  PressRow(3);
  const TBoxAnswer User(IDOK);
  Choose(u"IgnoredProblem1");
  EXPECT_TRUE(User.Text().starts_with(u"The problem could not be ignored: "));
  EXPECT_EQ(List.RowCount(), 4);
}

TEST_F(MainWindow, FixesNothingWhenNothingIsSelected) {
  Fill();
  Choose(u"Nonechecked1");
  for (const char16_t *Entry : {u"dxBarButton8", u"dxBarLargeButton2", u"Startfixing1"}) {
    const TBoxAnswer User(IDOK);
    Choose(Entry);
    EXPECT_EQ(User.Text(), u"No problems selected.") << ToUtf8(Entry);
  }
  EXPECT_EQ(Bench.DialogMode, TDialogMode::Scan) << "untouched";
}

// ---- runs --------------------------------------------------------------------------------

TEST_F(MainWindow, TouchesNoProblemDuringARun) {
  Fill();
  PressOn(u"Label_5");
  PressRow(0);
  Main.BeginRun();
  Main.ClearCounts();
  EXPECT_EQ(List.RowCount(), 0);
  EXPECT_FALSE(ShowsProblem());
  EXPECT_EQ(Text(u"lab_5"), u"");
  Bench.Problems.Clear();
  List.Refresh();
  UpdateWindow(List.Handle());
  Bench.AddProblem(4, u"HKEY_CURRENT_USER\\x");
  Main.EndRun(false);
  EXPECT_EQ(Rows(), u"x+") << "of the category shown before";
  EXPECT_EQ(Text(u"Lab_reg"), u"Fonts");
  EXPECT_EQ(Text(u"Lab_count"), u"1");
  EXPECT_EQ(Text(u"lab_5"), u"(1)");
  EXPECT_EQ(Text(u"ImageNote_5"), u"Fonts (1)") << "what aids for the blind read";
  EXPECT_EQ(Text(u"lab_10"), u"");
  EXPECT_EQ(Panel(0), u"1 problems found");
  EXPECT_EQ(Panel(1), u"1 problems selected for fixing");
  Bench.AddProblem(9, u"HKEY_CURRENT_USER\\y");
  Main.EndRun(true);
  EXPECT_EQ(Rows(), u"x+y+") << "of all";
  EXPECT_EQ(Text(u"Lab_reg"), u"Hivesweep");
}

TEST_F(MainWindow, CountsWhileARunGoesOn) {
  auto &Timer = Main.Find<TTimer>(u"Timer1");
  EXPECT_FALSE(Timer.Enabled());
  Main.BeginRun();
  Bench.Busy = true;
  Bench.AddProblem(4, u"HKEY_CURRENT_USER\\x");
  EXPECT_TRUE(WaitUntil([&] { return Text(u"lab_5") == u"(1)"; }));
  Bench.Busy = false;
  Main.EndRun(true);
  EXPECT_FALSE(Timer.Enabled());
}

TEST_F(MainWindow, ALaterWishTakesThePlaceOfAnEarlierOne) {
  Fill();
  // The second one arrives while the list is being filled for the first.
  PostChoice(u"dxb_5");
  PostChoice(u"dxb_10");
  PumpMessages();
  EXPECT_EQ(Text(u"Lab_reg"), u"Software");
  EXPECT_EQ(Rows(), u"e+o+");
  EXPECT_EQ(Text(u"Lab_count"), u"2");
  EXPECT_TRUE(Main.Find<TImageNote>(u"ImageNote_10").Selected());
  EXPECT_FALSE(Main.Find<TImageNote>(u"ImageNote_5").Selected());
}

TEST_F(MainWindow, AWelcomeStaysWhereverTheUserGoes) {
  Fill();
  Main.SetWelcome(u"7 problems were found.");
  PressRow(0);
  EXPECT_EQ(Text(u"Lab_welcome"), u"7 problems were found.");
  EXPECT_TRUE(Main.Find<TLabel>(u"Lab_welcome").Visible());
}

TEST_F(MainWindow, ExitClosesIt) {
  Choose(u"dxBarButton2");
  EXPECT_FALSE(Main.Visible());
}

// ---- looks ---------------------------------------------------------------------------------

TEST_F(MainWindow, ARowHasTheColourOfItsRisk) {
  Fill();
  Bench.AddProblem(10, u"HKEY_CURRENT_USER\\ungraded");
  Main.EndRun(true);
  UpdateWindow(List.Handle());
  const auto PixelAt = [&](int Row, int X) {
    const HDC Screen = GetDC(List.Handle());
    const COLORREF Color = GetPixel(Screen, X, List.RowBounds(Row).Top + 1);
    ReleaseDC(List.Handle(), Screen);
    return Color;
  };
  const int Second = List.ColumnWidth(0), Third = Second + List.ColumnWidth(1);
  const struct {
    int Row;
    TColorRole Ground;
    int Icon;
  } Cases[] = {{0, TColorRole::RiskHigh, 20},
               {1, TColorRole::RiskLow, 18},
               {5, TColorRole::RiskMedium, 19},
               {7, TColorRole::Window, -1}};
  for (const auto &C : Cases) {
    EXPECT_EQ(PixelAt(C.Row, Third - 4), Look.Color(C.Ground)) << C.Row;
    EXPECT_EQ(PixelAt(C.Row, Second + 3), Look.Color(C.Ground)) << C.Row << ", around its icon";
    EXPECT_EQ(List.Cells(C.Row).SubImages, std::vector<int>{C.Icon}) << C.Row;
  }
}

TEST(MainWindowLooks, TellsOfLimitedRights) {
  TTestBench Bench;
  TLook Look;
  Tfrm_main Able(Look, Bench);
  EXPECT_THROW(static_cast<void>(Able.Find<TStatusBar>(u"dxStatusBar1").PanelText(2)),
               std::out_of_range);
  Bench.LimitedRights = true;
  Tfrm_main Limited(Look, Bench);
  EXPECT_TRUE(Limited.Find<TStatusBar>(u"dxStatusBar1")
                  .PanelText(2)
                  .starts_with(u"Without administrator rights"));
  EXPECT_EQ(Limited.LeastClientSize().Width, Able.LeastClientSize().Width);
}

TEST(MainWindowLooks, FitsASmallScreenAndALargeScale) {
  TTestBench Bench;
  for (const int Dpi : {96, 192}) {
    TLook Look(Dpi);
    Tfrm_main Main(Look, Bench);
    Main.Show();
    const TSize Least = Main.LeastClientSize();
    EXPECT_LE(Least.Width, 790 * Dpi / 96);
    EXPECT_LE(Least.Height, 510 * Dpi / 96);
    const auto &List = Main.Find<TListView>(u"Lv_problems");
    if (Dpi == 96) { // the test's screen is too small for the other one
      EXPECT_GE(List.ColumnWidth(2), 380);
    }
    Main.SetClientSize(Least);
    EXPECT_GT(List.Bounds().Height, 200 * Dpi / 96);
    EXPECT_LE(List.Parent()->Bounds().Bottom(),
              Main.Find<TStatusBar>(u"dxStatusBar1").Bounds().Top);
    EXPECT_FALSE(GetWindowLongW(List.Handle(), GWL_STYLE) & WS_HSCROLL);
  }
}

TEST(MainWindowLooks, InHighContrastTheSystemsColoursAreShown) {
  TTestBench Bench;
  TLook Look;
  Tfrm_main Main(Look, Bench);
  Main.Show();
  Look.TakeColors(true);
  EXPECT_EQ(PixelOf(Main.Find<TImageNote>(u"ImageNote_1"), {2, 2}), GetSysColor(COLOR_HIGHLIGHT));
  EXPECT_EQ(PixelOf(Main.Find<TImageNote>(u"ImageNote_2"), {2, 2}), GetSysColor(COLOR_WINDOW));
  EXPECT_EQ(PixelOf(Main.Find<TPanel>(u"Panel_details"), {2, 2}), GetSysColor(COLOR_WINDOW));
}

} // namespace
} // namespace hivesweep
