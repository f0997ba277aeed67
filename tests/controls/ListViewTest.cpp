// Lists, virtual and plain, as a user sees and presses them.
#include <gtest/gtest.h>

#include "controls/Label.h"
#include "controls/ListView.h"
#include "controls/MessageLoop.h"
#include "controls/Win32.h"
#include "tests/controls/DemoForm.h"
#include "tests/controls/User.h"

namespace hivesweep {
namespace {

using TNames = std::vector<std::u16string>;

// What the system's control itself shows.
std::u16string ShownText(const TListView &List, int Row, int Column) {
  wchar_t Buffer[300] = L"";
  LVITEMW Item{};
  Item.iSubItem = Column;
  Item.pszText = Buffer;
  Item.cchTextMax = static_cast<int>(std::size(Buffer));
  SendMessageW(List.Handle(), LVM_GETITEMTEXTW, static_cast<WPARAM>(Row),
               reinterpret_cast<LPARAM>(&Item));
  return FromWide(Buffer);
}

bool ShownChecked(const TListView &List, int Row) {
  return SendMessageW(List.Handle(), LVM_GETITEMSTATE, static_cast<WPARAM>(Row),
                      LVIS_STATEIMAGEMASK) == INDEXTOSTATEIMAGEMASK(2);
}

TPoint Middle(const TRect &Place) {
  return {Place.Left + Place.Width / 2, Place.Top + Place.Height / 2};
}

class VirtualList : public testing::Test {
protected:
  void Fill(int Count) {
    Window.Rows = Count;
    Window.Checks.assign(static_cast<std::size_t>(Count), false);
    List.SetRowCount(Count);
    Window.Show();
    PumpMessages();
  }

  TLook Look;
  TDemoWindow Window{Look};
  TListView &List = Window.Find<TListView>(u"List");
};

TEST_F(VirtualList, AsksOnlyForTheRowsThatItShows) {
  Fill(100'000);
  EXPECT_EQ(List.RowCount(), 100'000);
  EXPECT_EQ(ShownText(List, 99'999, 2), u"HKEY_LOCAL_MACHINE\\Software\\99999");
  Window.Asked = 0;
  List.Refresh();
  UpdateWindow(List.Handle());
  const int Page = List.Bounds().Height / List.RowBounds(0).Height + 1;
  EXPECT_GT(Window.Asked, 0);
  EXPECT_LE(Window.Asked, 2 * Page) << "each row once, not once for each of its cells";
  List.Select(50'000);
  EXPECT_EQ(List.Selected(), 50'000);
  EXPECT_GT(List.TopRow(), 49'000);
  List.SetRowCount(0);
  UpdateWindow(List.Handle());
  EXPECT_EQ(List.Selected(), -1);
}

TEST_F(VirtualList, TellsAPressOnTheCheckBoxFromOneOnTheRow) {
  Fill(20);
  PressAt(List, Middle(List.CheckBounds(1)));
  EXPECT_TRUE(ShownChecked(List, 1));
  EXPECT_FALSE(ShownChecked(List, 0));
  PressAt(List, {List.RowBounds(2).Left + 100, Middle(List.RowBounds(2)).Y});
  EXPECT_FALSE(ShownChecked(List, 2));
  EXPECT_EQ(List.Selected(), 2);
  EXPECT_EQ(Window.Happened, (TNames{u"check 1", u"row 2"}));
  EXPECT_EQ(List.RowAt({200, List.Bounds().Height - 2}) < List.RowCount(), true);
  EXPECT_EQ(List.CheckBounds(-1), TRect{});
}

TEST_F(VirtualList, TheKeyboardDoesWhatTheMouseDoes) {
  Fill(20);
  List.Focus();
  List.Select(3);
  Type(VK_DOWN);
  Type(VK_SPACE);
  PostMessageW(List.Handle(), WM_CHAR, u't', 1);
  PumpMessages();
  EXPECT_EQ(List.Selected(), 4) << "a letter does not lead to the first row";
  EXPECT_EQ(Window.Happened, (TNames{u"row 4", u"check 4"}));
  EXPECT_TRUE(ShownChecked(List, 4));
}

TEST_F(VirtualList, AKeyActsOnItsRowAlsoWhenThatIsOutOfSight) {
  Fill(1'000);
  List.Focus();
  List.Select(3);
  const auto ScrollAway = [this] {
    SendMessageW(List.Handle(), LVM_ENSUREVISIBLE, 900, FALSE);
    ASSERT_GT(List.TopRow(), 3);
  };
  ScrollAway();
  Type(VK_SPACE);
  EXPECT_TRUE(ShownChecked(List, 3));
  EXPECT_LE(List.TopRow(), 3) << "nobody has seen what changed";
  ScrollAway();
  PostMessageW(List.Handle(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List.Handle()), -1);
  PostKey(VK_ESCAPE);
  PumpMessages();
  EXPECT_LE(List.TopRow(), 3) << "the menu opens at its row";
}

TEST_F(VirtualList, TheMenuOpensAtTheRowAndItsChoiceIsCarriedOut) {
  Fill(5);
  List.Focus();
  List.Select(1);
  // The menu's own loop reads the keys that follow.
  PostMessageW(List.Handle(), WM_CONTEXTMENU, reinterpret_cast<WPARAM>(List.Handle()), -1);
  for (const int Key : {VK_DOWN, VK_DOWN, VK_RETURN})
    PostKey(Key);
  PumpMessages();
  EXPECT_EQ(Window.Happened, (TNames{u"Pop", u"Open"}));
}

TEST(PlainList, KeepsItsRowsAndTheirChecks) {
  TLook Look;
  TDemoDialog Dialog(Look, nullptr);
  auto &List = Dialog.Find<TListView>(u"List");
  for (const char16_t *Name : {u"ActiveX", u"Fonts", u"Sounds"})
    List.AddRow({{Name}, -1, {}, true});
  Dialog.Show();
  Dialog.Happened.clear();
  List.SetCell(1, 1, u"      Scanning...");
  EXPECT_EQ(ShownText(List, 1, 1), u"      Scanning...");
  PressAt(List, Middle(List.CheckBounds(1)));
  EXPECT_FALSE(List.Checked(1));
  EXPECT_FALSE(ShownChecked(List, 1));
  EXPECT_EQ(Dialog.Happened, TNames{u"List"}) << "told once, after the change";
  List.Select(2);
  List.DeleteRow(0);
  EXPECT_EQ(List.RowCount(), 2);
  EXPECT_EQ(ShownText(List, 0, 0), u"Fonts");
  EXPECT_EQ(List.Selected(), -1) << "the selected row must not slip to another";
  // What is not there is ignored.
  List.DeleteRow(7);
  List.SetChecked(-1, true);
  List.SetCell(9, 0, u"x");
  EXPECT_FALSE(List.Checked(9));
  List.ClearRows();
  EXPECT_EQ(SendMessageW(List.Handle(), LVM_GETITEMCOUNT, 0, 0), 0);
}

TEST(PlainList, ColumnsGiveWayToTheirCaptionsAndTheLastOneFillsTheList) {
  TLook Look;
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  auto &List = Dialog.Find<TListView>(u"List");
  EXPECT_EQ(List.ColumnWidth(0), 200);
  List.FitLastColumn();
  const auto ExpectFilled = [&List](const char *Why) {
    RECT Inside;
    GetClientRect(List.Handle(), &Inside);
    EXPECT_EQ(List.ColumnWidth(0) + List.ColumnWidth(1), Inside.right) << Why;
  };
  ExpectFilled("at first");
  const int Width = List.ColumnWidth(1);
  for (int Row = 0; Row < 50; ++Row)
    List.AddRow({{u"Row"}, -1, {}, false});
  EXPECT_LT(List.ColumnWidth(1), Width) << "makes room for the scroll bar";
  ExpectFilled("beside a scroll bar");
  Dialog.SetClientSize({700, 400});
  ExpectFilled("in a wider form");
  List.SetColumnCaption(1, u"State");
  ExpectFilled("after another caption");
  const std::u16string Long = u"A caption that is far longer than two hundred pixels are wide";
  List.SetColumnCaption(0, Long);
  EXPECT_GT(List.ColumnWidth(0), Look.Measure(Long, TFontRole::Body).Width);
}

} // namespace
} // namespace hivesweep
