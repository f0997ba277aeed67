// The dialog of ignored problems: real presses, and the file behind it.
#include <gtest/gtest.h>

#include "controls/Button.h"
#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "controls/Win32.h"
#include "tests/controls/User.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/IgnoredForm.h"

namespace hivesweep {
namespace {

using TNames = std::vector<std::u16string>;

class IgnoredForm : public testing::Test {
protected:
  IgnoredForm() {
    Main.Show();
    TRegistryClean Clean(Bench.Platform);
    for (const char16_t *const Key : {u"A", u"B", u"C"})
      EXPECT_EQ(Clean.IgnoreList.Add(TTestCorner::KeyPath(Key), u"value " + std::u16string(Key)),
                TError());
  }

  TNames Kept() {
    TNames Names;
    for (const std::u16string &Key :
         KeysOfIni(*Bench.Platform.Profiles, Data.Paths.IgnoreIniPath, u"Registry"))
      Names.push_back(Key.substr(Key.rfind(u'\\') + 1));
    return Names;
  }
  static TNames Shown(TForm &Dialog) {
    auto &List = Dialog.Find<TListView>(u"Lv_ignored");
    TNames Names;
    for (int Row = 0; Row < List.RowCount(); ++Row) {
      const TListCells Cells = List.Cells(Row);
      Names.push_back(Cells.Texts.at(0).substr(Cells.Texts.at(0).rfind(u'\\') + 1));
      EXPECT_EQ(Cells.Texts.at(1), u"value " + Names.back());
    }
    return Names;
  }
  static void PressBox(TForm &Dialog, int Row) {
    auto &List = Dialog.Find<TListView>(u"Lv_ignored");
    const TRect Box = List.CheckBounds(Row);
    PressAt(List, {Box.Left + Box.Width / 2, Box.Top + Box.Height / 2});
  }

  TTestBench Bench;
  TTestData Data{Bench.Platform};
  TTestMain Main;
};

TEST_F(IgnoredForm, RemovesWhatIsCheckedAndNothingElse) {
  Tfrm_ignored Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &Remove = Dialog.Find<TButton>(u"Bt_remove");
  EXPECT_EQ(Shown(Dialog), (TNames{u"A", u"B", u"C"}));
  EXPECT_TRUE(Dialog.Find<TListView>(u"Lv_ignored").Focused());
  EXPECT_FALSE(Remove.Enabled());
  PressBox(Dialog, 1);
  EXPECT_TRUE(Remove.Enabled());
  PressBox(Dialog, 1);
  EXPECT_FALSE(Remove.Enabled()) << "nothing is checked any more";
  PressBox(Dialog, 0);
  PressBox(Dialog, 2);
  Press(Remove);
  EXPECT_EQ(Shown(Dialog), TNames{u"B"});
  EXPECT_EQ(Kept(), TNames{u"B"});
  EXPECT_EQ(Main.Happened, TNames{u"RefreshCounts"});
  EXPECT_FALSE(Remove.Enabled()) << "what is left is not checked";
  // The display takes the focus away when it removes the window of an earlier test.
  SetForegroundWindow(Dialog.Handle());
  Type(VK_ESCAPE);
  EXPECT_FALSE(Dialog.Visible());
}

TEST_F(IgnoredForm, TheMenuChecksAllAndNone) {
  Tfrm_ignored Dialog(Main, Bench, Main);
  Dialog.Show();
  const auto &List = Dialog.Find<TListView>(u"Lv_ignored");
  const auto &Remove = Dialog.Find<TButton>(u"Bt_remove");
  const auto Checks = [&List] {
    std::string All;
    for (int Row = 0; Row < List.RowCount(); ++Row)
      All += List.Checked(Row) ? '1' : '0';
    return All;
  };
  Dialog.Find<TMenuItem>(u"SelectAll1").Click();
  EXPECT_EQ(Checks(), "111");
  EXPECT_TRUE(Remove.Enabled());
  Dialog.Find<TMenuItem>(u"SelectAll2").Click();
  EXPECT_EQ(Checks(), "000");
  EXPECT_FALSE(Remove.Enabled());
  Dialog.Find<TMenuItem>(u"SelectAll1").Click();
  Press(Remove);
  EXPECT_EQ(Checks(), "");
  EXPECT_EQ(Kept(), TNames{});
  EXPECT_FALSE(Remove.Enabled());
}

TEST_F(IgnoredForm, WhatCanNotBeRemovedStaysInTheListAndIsTold) {
  Tfrm_ignored Dialog(Main, Bench, Main);
  Dialog.Show();
  const HANDLE File = CreateFileW(Wide(Data.Paths.IgnoreIniPath), GENERIC_READ, FILE_SHARE_READ,
                                  nullptr, OPEN_EXISTING, 0, nullptr);
  ASSERT_NE(File, INVALID_HANDLE_VALUE);
  PressBox(Dialog, 1);
  {
    const TBoxAnswer User(IDOK);
    Press(Dialog.Find<TButton>(u"Bt_remove"));
    EXPECT_TRUE(User.Text().starts_with(u"The key is still on the ignore list: "));
  }
  EXPECT_EQ(Shown(Dialog), (TNames{u"A", u"B", u"C"}));
  CloseHandle(File);
  PressBox(Dialog, 1);
  Press(Dialog.Find<TButton>(u"Bt_remove"));
  EXPECT_EQ(Shown(Dialog), (TNames{u"A", u"C"}));
}

} // namespace
} // namespace hivesweep
