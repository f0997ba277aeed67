// A machine with leftovers in a user's hands: scanned, fixed and restored through the
// windows alone, with the real registry and the real registry editor.
#include <gtest/gtest.h>

#include "controls/CheckBox.h"
#include "controls/ImageNote.h"
#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "controls/StatusBar.h"
#include "controls/ToolBar.h"
#include "controls/Win32.h"
#include "scanners/ScannerTable.h"
#include "tests/controls/User.h"
#include "tests/repair/TestRepair.h"
#include "tests/ui/window/Script.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/MainForm.h"

namespace hivesweep {
namespace {

// All that programs keep in the registry, of the user and of the machine.
std::u16string DescribeSoftware() {
  const std::unique_ptr<TRegistryHost> Host = std::move(MakeLivePlatform()->Registry);
  std::u16string Out;
  for (const TRegRoot Root : {TRegRoot::CurrentUser, TRegRoot::LocalMachine})
    if (const TRegOpened Opened = Host->Open(Root, u"Software"); Opened.Key)
      Describe(*Opened.Key, u"", Out);
  return Out;
}

class Sample : public testing::Test {
protected:
  Sample() { Main.Show(); }

  void PressTool(const char16_t *Item) {
    auto &Bar = Main.Find<TToolBar>(u"Bar_main");
    const TRect Place = Bar.ItemBounds(Main.Find<TMenuItem>(Item));
    PressAt(Bar, {Place.Left + Place.Width / 3, Place.Top + Place.Height / 2});
  }
  std::u16string LabelText(const char16_t *Name) const { return Main.Find<TLabel>(Name).Text(); }
  std::u16string Panel(int Index) const {
    return Main.Find<TStatusBar>(u"dxStatusBar1").PanelText(Index);
  }

  static void PressControl(TForm &Form, const char16_t *Name) { Press(Form.Find<TControl>(Name)); }

  // What a user does in the dialog that scans and fixes.
  static std::vector<TScriptStep> RunAndClose(std::u16string *Status) {
    return {{u"frm_check", [](TForm &Form) { PressControl(Form, u"bt_scan"); }},
            {u"frm_check", [Status](TForm &Form) {
               *Status = Form.Find<TLabel>(u"Lab_status").Text();
               PressControl(Form, u"Bt_close");
             }}};
  }

  TTestBench Bench{ScannerTable()};
  TLook Look;
  Tfrm_main Main{Look, Bench};
  TListView &List = Main.Find<TListView>(u"Lv_problems");
};

TEST_F(Sample, IsScannedFixedAndRestoredThroughTheWindows) {
  std::u16string Status;

  {
    const TScript User(RunAndClose(&Status));
    PressTool(u"dxBarLargeButton1");
    ASSERT_TRUE(User.Done());
  }
  EXPECT_EQ(Status, u"Scan completed.");
  const int Found = List.RowCount();
  const std::u16string Count = ToDecimal(static_cast<unsigned>(Found));
  ASSERT_GT(Found, 25);
  EXPECT_EQ(LabelText(u"lab_1"), u"(" + Count + u")");
  EXPECT_EQ(Panel(0), Count + u" problems found");
  EXPECT_EQ(LabelText(u"Lab_welcome").find(Count + u" problems were found."), 0u);

  // Not before the scan: when it is first asked, the shell notes where its folders are.
  const std::u16string Before = DescribeSoftware();
  PressControl(Main, u"CheckBox_selectall"); // those of high risk, too
  EXPECT_EQ(Panel(1), Count + u" problems selected for fixing");
  {
    const TScript User(RunAndClose(&Status));
    PressTool(u"dxBarLargeButton2");
    ASSERT_TRUE(User.Done());
  }
  EXPECT_EQ(Status, u"Repaired successfully.");
  EXPECT_EQ(List.RowCount(), 0);
  EXPECT_EQ(LabelText(u"Lab_welcome").find(Count + u" problems were fixed."), 0u);
  EXPECT_EQ(LabelText(u"Lab_totalvalue"), Count);
  EXPECT_NE(DescribeSoftware(), Before);

  {
    const auto HasRow = [](TForm &Form) {
      return Form.Find<TListView>(u"Lv_back").RowCount() == 1;
    };
    const auto HasTwo = [](TForm &Form) {
      return Form.Find<TListView>(u"Lv_back").RowCount() == 2;
    };
    const TScript User(
        {{u"frm_rescue",
          [](TForm &Form) {
            const TBoxAnswer Answers(std::vector<int>{IDYES, IDOK});
            PressControl(Form, u"Button1");
          },
          HasRow},
         // What the restore itself has changed can be undone, too.
         {u"frm_rescue", [](TForm &Form) { PressControl(Form, u"Button3"); }, HasTwo}});
    PressTool(u"dxBarLargeButton4");
    ASSERT_TRUE(User.Done());
  }
  EXPECT_EQ(Difference(DescribeSoftware(), Before), "");
}

} // namespace
} // namespace hivesweep
