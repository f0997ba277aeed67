// The dialog that tells what could not be done.
#include <algorithm>

#include <gtest/gtest.h>

#include "controls/Button.h"
#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "controls/Win32.h"
#include "tests/controls/User.h"
#include "tests/ui/window/Script.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/CheckForm.h"
#include "ui/ReportForm.h"

namespace hivesweep {
namespace {

std::u16string Copied() {
  std::u16string Text;
  if (!OpenClipboard(nullptr))
    return Text;
  if (const HANDLE Block = GetClipboardData(CF_UNICODETEXT)) {
    Text = FromWide(static_cast<const wchar_t *>(GlobalLock(Block)));
    GlobalUnlock(Block);
  }
  CloseClipboard();
  return Text;
}

TEST(ReportForm, TellsRowByRowWhatAFixCouldNotRemoveAndWhy) {
  std::function<void()> OnPump;
  TTestBench Bench({}, WatchedPlatform(OnPump, SHIPPED_FOLDER));
  Bench.Language.SetLanguage(u"German");
  TTestData Data(Bench.Platform);
  TTestCorner Corner(*Bench.Platform.Registry);
  TTestMain Main;
  Main.Show();
  Corner.SetText(u"A", u"x", u"one");
  Corner.SetText(u"B", u"y", u"two");
  Bench.DialogMode = TDialogMode::Fix;
  Bench.AddProblem(4, TTestCorner::KeyPath(u"A")).ValueName = u"x";
  Bench.AddProblem(4, TTestCorner::KeyPath(u"A")).ValueName = u"gone\nfor long";
  Bench.AddProblem(4, TTestCorner::KeyPath(u"B"));
  Bench.SelectedCount = 3;
  OnPump = [&, Changed = false]() mutable { // between its record and its removal
    std::vector<TStoredFile> Records;
    Bench.Platform.Storage->List(Data.Paths.UndoFolderPath, Records);
    if (!Records.empty() && !std::exchange(Changed, true))
      Corner.SetText(u"B", u"z", u"newer");
  };
  Tfrm_check Dialog(Main, Bench, Main);
  const std::u16string Table =
      TTestCorner::KeyPath(u"B") +
      u"\tN/A\tDer Eintrag wurde nicht angetastet, weil er nicht "
      u"gesichert werden konnte oder inzwischen ge\u00E4ndert wurde.\r\n" +
      TTestCorner::KeyPath(u"A") +
      u"\tgone\u00B7for long\tDer Eintrag war schon nicht mehr vorhanden.\r\n";
  const TScript Script({{u"frm_report",
                         [&](TForm &Report) {
                           EXPECT_TRUE(Report.Find<TControl>(u"Lab_summary")
                                           .Text()
                                           .starts_with(u"Nicht entfernte Probleme: 2."));
                           EXPECT_EQ(Report.Find<TListView>(u"Lv_report").RowCount(), 2);
                           Report.Find<TButton>(u"Bt_copy").Click();
                           EXPECT_EQ(ToUtf8(Copied()), ToUtf8(Table));
                           Report.Find<TListView>(u"Lv_report").Select(1);
                           Report.Find<TMenuItem>(u"CopyRow").Click();
                           EXPECT_EQ(Copied(), Table.substr(Table.find(u'\n') + 1));
                           Report.Find<TButton>(u"Bt_close").Click();
                         }},
                        {u"frm_check", [](TForm &Check) { Check.Close(); }}});
  PostClick(Dialog.Find<TButton>(u"bt_scan"));
  EXPECT_TRUE(ShowModalForm(Dialog));
  EXPECT_TRUE(Script.Done());
  EXPECT_EQ(Corner.Text(u"A", u"x"), u"");
  EXPECT_EQ(Corner.Text(u"B", u"z"), u"newer");
}

TEST(ReportForm, CopiesThousandsOfRows) {
  constexpr int Count = 50'000;
  TTestBench Bench;
  TTestMain Main;
  Tfrm_report Report(Main, Bench, u"",
                     std::vector<TReportRow>(Count, {u"HKEY_USERS\\x", u"", u""}));
  Report.Show();
  EXPECT_EQ(Report.Find<TListView>(u"Lv_report").RowCount(), Count);
  Press(Report.Find<TButton>(u"Bt_copy"));
  const std::u16string Text = Copied();
  EXPECT_EQ(std::count(Text.begin(), Text.end(), u'\n'), Count);
}

} // namespace
} // namespace hivesweep
