// The smaller controls: bars, menus, check boxes, timers, messages, colours.
#include <cmath>

#include <gtest/gtest.h>

#include "controls/CheckBox.h"
#include "controls/ImageList.h"
#include "controls/ImageProgress.h"
#include "controls/Label.h"
#include "controls/MenuItem.h"
#include "controls/MessageLoop.h"
#include "controls/StatusBar.h"
#include "controls/Timer.h"
#include "controls/ToolBar.h"
#include "controls/Win32.h"
#include "tests/controls/DemoForm.h"
#include "tests/controls/User.h"

namespace hivesweep {
namespace {

using TNames = std::vector<std::u16string>;

class Parts : public testing::Test {
protected:
  Parts() { Window.Show(); }

  TPoint Middle(const char16_t *Item) {
    const TRect Place = Bar.ItemBounds(Window.Find<TMenuItem>(Item));
    return {Place.Left + Place.Width / 2, Place.Top + Place.Height / 2};
  }

  TLook Look;
  TDemoWindow Window{Look};
  TToolBar &Bar = Window.Find<TToolBar>(u"Bar");
};

TEST_F(Parts, ABarRunsItsEntriesByMouseAndKeyboard) {
  PressAt(Bar, Middle(u"BarScan"));
  PressAt(Bar, Middle(u"BarFix")); // disabled
  EXPECT_EQ(Window.Happened, TNames{u"BarScan"});
  Window.Find<TMenuItem>(u"BarFix").SetEnabled(true);
  Bar.Focus();
  Type(VK_RIGHT);
  wchar_t Read[20] = L"";
  GetWindowTextW(Bar.Handle(), Read, static_cast<int>(std::size(Read)));
  EXPECT_EQ(FromWide(Read), Window.Find<TMenuItem>(u"BarFix").Caption());
  Type(VK_RETURN);
  Type(VK_LEFT);
  Type(VK_SPACE);
  EXPECT_EQ(Window.Happened, (TNames{u"BarScan", u"BarFix", u"BarScan"}));
}

TEST_F(Parts, AnEntryWithEntriesOpensAMenu) {
  PostPress(Bar, Middle(u"BarMore"));
  for (const int Key : {VK_DOWN, VK_RETURN})
    PostKey(Key);
  PumpMessages();
  EXPECT_EQ(Window.Happened, TNames{u"BarAbout"});
  PostPress(Bar, Middle(u"BarMore"));
  PostKey(VK_ESCAPE);
  PumpMessages();
  EXPECT_EQ(Window.Happened, TNames{u"BarAbout"}) << "closed without a choice";
}

TEST_F(Parts, TheMenuBarFollowsItsEntries) {
  const auto CaptionAt = [&](UINT Position) {
    wchar_t Text[50] = L"";
    const HMENU File = GetSubMenu(GetMenu(Window.Handle()), 0);
    GetMenuStringW(File, Position, Text, static_cast<int>(std::size(Text)), MF_BYPOSITION);
    return std::u16string(FromWide(Text));
  };
  auto &Scan = Window.Find<TMenuItem>(u"Scan");
  Scan.SetCaption(u"Suchen");
  EXPECT_EQ(CaptionAt(0), u"Suchen");
  PostMessageW(Window.Handle(), WM_COMMAND, Scan.Command(), 0);
  PumpMessages();
  Scan.SetEnabled(false);
  PostMessageW(Window.Handle(), WM_COMMAND, Scan.Command(), 0);
  PumpMessages();
  EXPECT_EQ(Window.Happened, TNames{u"Scan"}) << "a disabled entry does nothing";
  Scan.SetVisible(false);
  Window.Find<TMenuItem>(u"Line").SetVisible(false);
  EXPECT_EQ(CaptionAt(0), u"E&xit");
  // Alt and its letter, as the keyboard brings them.
  PostMessageW(Window.Handle(), WM_SYSCOMMAND, SC_KEYMENU, u'f');
  for (const int Key : {VK_DOWN, VK_RETURN})
    PostKey(Key);
  PumpMessages();
  EXPECT_EQ(Window.Happened.back(), u"Exit");
}

TEST_F(Parts, ACheckBoxChangesBeforeItTells) {
  auto &Box = Window.Find<TCheckBox>(u"Check_all");
  std::vector<bool> Told;
  Box.Bind(TEvent::MouseUp, TNotify([&](TComponent &) { Told.push_back(Box.Checked()); }));
  Press(Box);
  Box.Focus();
  Type(VK_SPACE);
  TypeWithAlt(u'a');
  Box.SetChecked(false);
  EXPECT_EQ(Told, (std::vector<bool>{true, false, true}));
  EXPECT_EQ(SendMessageW(Box.Handle(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
}

TEST_F(Parts, AStatusPanelGivesWayToItsText) {
  auto &Status = Window.Find<TStatusBar>(u"Status");
  const int Second = Status.PanelBounds(1).Left;
  EXPECT_EQ(Second, 195);
  std::u16string Long = u"100 problems found, and then some more text than the panel has room for";
  Status.SetPanelText(0, Long);
  EXPECT_GT(Status.PanelBounds(1).Left, Look.Measure(Long, TFontRole::Body).Width);
  Status.SetPanelText(0, u"1");
  EXPECT_EQ(Status.PanelBounds(1).Left, Second);
}

TEST_F(Parts, APanelOfLessWeightTakesWhatTheOthersDoNotNeed) {
  auto &Status = Window.Find<TStatusBar>(u"Status");
  Status.SetPanelText(0, u"12 problems found");
  Status.SetPanelText(1, u"10 problems selected");
  const int Least = Window.LeastClientSize().Width;
  const std::u16string Long = u"A remark that is longer than the design leaves room for";
  Status.AddPanel(Long);
  EXPECT_EQ(Status.PanelText(2), Long);
  EXPECT_EQ(Status.PanelBounds(0).Width, 195) << "the nearest one gives way first";
  EXPECT_LT(Status.PanelBounds(1).Width, 450);
  EXPECT_GE(Status.PanelBounds(2).Width, Look.Measure(Long, TFontRole::Body).Width);
  EXPECT_EQ(Status.ShownHint(), u"");
  const std::u16string Longer(200, u'm');
  Status.SetPanelText(2, Longer);
  EXPECT_EQ(Window.LeastClientSize().Width, Least) << "it never makes the form grow";
  EXPECT_GE(Status.PanelBounds(1).Width, Look.Measure(Status.PanelText(1), TFontRole::Body).Width);
  EXPECT_LE(Status.PanelBounds(2).Right(), Status.Bounds().Width);
  EXPECT_EQ(Status.ShownHint(), Longer);
}

TEST_F(Parts, TheGripResizesTheFormUnlessItIsMaximised) {
  const auto &Status = Window.Find<TStatusBar>(u"Status");
  const auto HitCorner = [&Status] {
    POINT Corner{Status.Bounds().Width - 4, Status.Bounds().Height - 4};
    ClientToScreen(Status.Handle(), &Corner);
    return SendMessageW(Status.Handle(), WM_NCHITTEST, 0, MAKELPARAM(Corner.x, Corner.y));
  };
  EXPECT_EQ(HitCorner(), HTBOTTOMRIGHT);
  ShowWindow(Window.Handle(), SW_MAXIMIZE);
  EXPECT_EQ(HitCorner(), HTCLIENT);
}

TEST_F(Parts, ATimerRunsOnlyWhileItIsEnabled) {
  auto &Timer = Window.Find<TTimer>(u"Timer");
  PumpMessages();
  EXPECT_EQ(Window.Happened, TNames{});
  Timer.SetEnabled(true);
  EXPECT_TRUE(WaitUntil([&] { return Window.Happened.size() >= 2; }));
  Timer.SetEnabled(false);
  const std::size_t Told = Window.Happened.size();
  // A message that was under way is not for it any more.
  SendMessageW(Window.Handle(), WM_TIMER, reinterpret_cast<WPARAM>(&Timer), 0);
  EXPECT_EQ(Window.Happened.size(), Told);
}

TEST_F(Parts, AProgressBarBearsEveryBound) {
  TDemoDialog Dialog(Look, &Window);
  auto &Bar100 = Dialog.Find<TImageProgress>(u"Progress");
  const int Full = Bar100.Bounds().Width - 2;
  constexpr std::int32_t Least = INT32_MIN, Most = INT32_MAX;
  const struct {
    std::int32_t Min, Max, Position;
    int Filled;
  } Cases[] = {
      {0, 100, 0, 0},      {0, 100, 50, Full / 2},    {0, 100, 100, Full},
      {0, 100, 250, Full}, {0, 100, -5, 0},           {5, 5, 5, 0},
      {10, 0, 5, 0},       {Least, Most, Most, Full}, {Least, Most, 0, Full / 2},
  };
  for (const auto &C : Cases) {
    Bar100.Set(C.Min, C.Max, C.Position);
    EXPECT_EQ(Bar100.Filled(), C.Filled) << C.Min << " to " << C.Max << ": " << C.Position;
  }
  Bar100.Set(0, 100, 50);
  EXPECT_EQ(PixelOf(Bar100, {Full / 2, 5}), Look.Color(TColorRole::Accent));
  EXPECT_EQ(PixelOf(Bar100, {Full / 2 + 3, 5}), Look.Color(TColorRole::Window));
}

TEST_F(Parts, PostedMessagesReachTheHandlersThroughThePump) {
  const auto Messages = MakeWindowMessages();
  Messages->Post(reinterpret_cast<TWindowHandle>(Window.Handle()), WM_COMMAND,
                 Window.Find<TMenuItem>(u"Exit").Command(), 0);
  Messages->Post(0, WM_COMMAND, Window.Find<TMenuItem>(u"Exit").Command(), 0);
  Messages->PumpAll();
  EXPECT_EQ(Window.Happened, TNames{u"Exit"});
}

TEST_F(Parts, HiddenControlsTakeNoPlaceAndNoFocus) {
  auto &Title = Window.Find<TLabel>(u"Title");
  Title.SetVisible(false);
  Title.SetText(std::u16string(500, u'W'));
  const int Width = Window.LeastClientSize().Width;
  Title.SetVisible(true);
  EXPECT_GT(Window.LeastClientSize().Width, Width);
  auto &Box = Window.Find<TCheckBox>(u"Check_all");
  Box.Focus();
  Box.SetVisible(false);
  EXPECT_FALSE(Box.Focused());
}

// ---- colours -----------------------------------------------------------------------------

// How well a text can be read on a ground: 1 to 21, by the usual formula.
double Contrast(TColor Text, TColor Ground) {
  const auto Light = [](TColor Color) {
    double Sum = 0;
    const double Weights[] = {0.2126, 0.7152, 0.0722};
    for (int Channel = 0; Channel < 3; ++Channel) {
      const double Part = ((Color >> (8 * Channel)) & 0xFF) / 255.0;
      Sum += Weights[Channel] *
             (Part <= 0.03928 ? Part / 12.92 : std::pow((Part + 0.055) / 1.055, 2.4));
    }
    return Sum;
  };
  const double A = Light(Text) + 0.05, B = Light(Ground) + 0.05;
  return A > B ? A / B : B / A;
}

TEST(Look, EveryTextCanBeReadOnItsGround) {
  const TLook Look;
  const struct {
    TColorRole Text, Ground;
  } Pairs[] = {{TColorRole::Text, TColorRole::Window},
               {TColorRole::Text, TColorRole::Face},
               {TColorRole::Text, TColorRole::ButtonDown},
               {TColorRole::QuietText, TColorRole::Face},
               {TColorRole::QuietText, TColorRole::Button},
               {TColorRole::AccentText, TColorRole::Accent},
               {TColorRole::Heading, TColorRole::Face},
               {TColorRole::PaneText, TColorRole::Pane},
               {TColorRole::PaneText, TColorRole::PaneHover},
               {TColorRole::PaneSelectedText, TColorRole::PaneSelected},
               {TColorRole::Text, TColorRole::RiskHigh},
               {TColorRole::Text, TColorRole::RiskMedium},
               {TColorRole::Text, TColorRole::RiskLow}};
  for (const auto &P : Pairs)
    EXPECT_GE(Contrast(Look.Color(P.Text), Look.Color(P.Ground)), 4.5)
        << static_cast<int>(P.Text) << " on " << static_cast<int>(P.Ground);
}

TEST(Look, InHighContrastTheSystemsColoursAreUsed) {
  TLook Look;
  TDemoWindow Window(Look);
  Window.Show();
  Look.TakeColors(true);
  EXPECT_EQ(Look.Color(TColorRole::PaneSelected), GetSysColor(COLOR_HIGHLIGHT));
  EXPECT_EQ(Look.Color(TColorRole::RiskHigh), GetSysColor(COLOR_WINDOW));
  EXPECT_EQ(PixelOf(Window, {300, 320}), GetSysColor(COLOR_WINDOW));
  SendMessageW(Window.Handle(), WM_SYSCOLORCHANGE, 0, 0);
  EXPECT_EQ(PixelOf(Window, {300, 320}), Look.Color(TColorRole::Face)) << "and they go again";
}

} // namespace
} // namespace hivesweep
