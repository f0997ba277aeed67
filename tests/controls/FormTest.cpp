// Forms: their tables, their life, the keyboard, and how texts make them grow.
#include <algorithm>
#include <stdexcept>

#include <gtest/gtest.h>

#include "controls/Button.h"
#include "controls/CheckBox.h"
#include "controls/ImageNote.h"
#include "controls/Label.h"
#include "controls/LabelNote.h"
#include "controls/ListView.h"
#include "controls/MenuItem.h"
#include "controls/MessageLoop.h"
#include "controls/Panel.h"
#include "controls/StatusBar.h"
#include "controls/Win32.h"
#include "platform/Text.h"
#include "tests/controls/DemoForm.h"
#include "tests/controls/User.h"
#include "tests/controls/WellLaidOut.h"

namespace hivesweep {
namespace {

using TNames = std::vector<std::u16string>;

class Form : public testing::Test {
protected:
  TLook Look;
};

// ---- tables -----------------------------------------------------------------------------

struct TListener {
  void Notify(TComponent &Sender) { static_cast<void>(Sender); }
};

TEST_F(Form, AWrongNameFailsBeforeTheFormIsSeen) {
  const TComponentRow Good{
      .Name = u"Go", .Kind = TKind::Button, .On = {{TEvent::Click, u"GoClick"}}};
  const auto With = [&Good](auto Change) {
    TComponentRow Row = Good;
    Change(Row);
    return std::vector<TComponentRow>{Good, Row};
  };
  const auto Named = [&With](auto Change) {
    return With([&](TComponentRow &Row) {
      Row.Name = u"Other";
      Change(Row);
    });
  };
  const struct {
    const char *Why;
    std::vector<TComponentRow> Rows;
    const char *Says;
  } Cases[] = {
      {"the same name twice", With([](TComponentRow &) {}), "bad.Go: a name"},
      {"no name", With([](TComponentRow &Row) { Row.Name.clear(); }), "bad.: a name"},
      {"no such handler", Named([](TComponentRow &Row) {
         Row.On = {{TEvent::Click, u"GoClik"}};
       }),
       "bad.Other: there is no handler GoClik"},
      {"an event that a button does not have", Named([](TComponentRow &Row) {
         Row.On = {{TEvent::Timer, u"GoClick"}};
       }),
       "bad.Other: this event cannot be served by GoClick"},
      {"a handler of another kind", Named([](TComponentRow &Row) {
         Row.Kind = TKind::ListView;
         Row.On = {{TEvent::ColumnClick, u"GoClick"}};
       }),
       "bad.Other: this event cannot be served by GoClick"},
      {"no such parent", Named([](TComponentRow &Row) { Row.Parent = u"Nowhere"; }),
       "bad.Other: there is no fitting Nowhere"},
      {"a list without its images", Named([](TComponentRow &Row) {
         Row.Kind = TKind::ListView;
         Row.Images = u"Go";
       }),
       "bad.Other: there is no fitting Go"},
      {"an entry without a menu", Named([](TComponentRow &Row) { Row.Kind = TKind::MenuItem; }),
       "bad.Other: an entry without a menu"},
      {"a handler that nothing uses", {}, "bad.GoClick: no component has this handler"},
  };
  TListener Listener;
  for (const auto &C : Cases) {
    const TFormTable Table{.Name = u"bad", .Size = {100, 100}, .Rows = C.Rows};
    try {
      const TForm Bad(Look, nullptr, Table, {Handler(u"GoClick", &Listener, &TListener::Notify)});
      ADD_FAILURE() << C.Why;
    } catch (const TFormError &Error) {
      EXPECT_EQ(std::string(Error.what()).rfind(C.Says, 0), 0U) << C.Why << ": " << Error.what();
    }
  }
}

TEST_F(Form, FindsItsComponentsByNameInTheOrderOfTheTable) {
  TDemoWindow Window(Look);
  EXPECT_EQ(Window.Find<TLabel>(u"Label_5").Tag, 5);
  EXPECT_EQ(Window.Find<TLabel>(u"lab_5").Parent(), &Window.Find<TImageNote>(u"ImageNote_5"));
  EXPECT_EQ(Window.FindComponent(u"Label_6"), nullptr);
  EXPECT_THROW(Window.Find<TLabel>(u"Label_6"), TFormError);
  EXPECT_THROW(Window.Find<TButton>(u"Label_5"), TFormError) << "there, but no button";
  const TFormTable Table = TDemoWindow::Table();
  ASSERT_EQ(Window.Components().size(), Table.Rows.size());
  for (std::size_t I = 0; I < Table.Rows.size(); ++I) {
    EXPECT_EQ(Window.Components()[I]->Name(), Table.Rows[I].Name);
    EXPECT_EQ(Window.Components()[I]->Owner(), &Window);
  }
}

// ---- the mouse ---------------------------------------------------------------------------

TEST_F(Form, APressCountsOnlyWhereItIsLetGo) {
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  Dialog.Happened.clear();
  auto &Button = Dialog.Find<TButton>(u"Scan");
  const auto Up = [&](int X, int Y) {
    PostPress(Button, {5, 5});
    PostMessageW(Button.Handle(), WM_LBUTTONUP, 0, MAKELPARAM(X, Y));
    PumpMessages();
  };
  Up(5, -30);
  EXPECT_EQ(Dialog.Happened, TNames{});
  Up(9, 9);
  EXPECT_EQ(Dialog.Happened, TNames{u"Scan"});
  Button.SetEnabled(false);
  EXPECT_FALSE(IsWindowEnabled(Button.Handle()));
  SendMessageW(Button.Handle(), BM_CLICK, 0, 0);
  Dialog.Find<TLabelNote>(u"Links").Focus();
  PressAt(Dialog.Find<TLabelNote>(u"Links"), {10, 24});
  EXPECT_EQ(Dialog.Find<TLabelNote>(u"Links").Index(), 1);
}

// ---- the keyboard -------------------------------------------------------------------------

std::u16string FocusName() {
  const TWindowControl *Focused = TWindowControl::Of(GetFocus());
  return Focused ? Focused->Name() : u"";
}

TEST_F(Form, TabLeadsThroughTheControlsInTheOrderOfTheTable) {
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  TNames Order;
  for (int Step = 0; Step < 6; ++Step) {
    Order.push_back(FocusName());
    Type(VK_TAB);
  }
  EXPECT_EQ(Order, (TNames{u"List", u"Links", u"Help", u"Scan", u"Close", u"List"}));
  Dialog.Find<TButton>(u"Help").Focus();
  Dialog.Find<TButton>(u"Help").SetEnabled(false);
  EXPECT_EQ(FocusName(), u"Scan") << "a disabled control gives the focus away";
}

TEST_F(Form, OfAFamilyOfEntriesTabReachesTheSelectedOneAndArrowsTheRest) {
  TDemoWindow Window(Look);
  Window.Show();
  PressAt(Window.Find<TImageNote>(u"ImageNote_3"), {3, 3});
  EXPECT_EQ(FocusName(), u"ImageNote_3");
  Type(VK_TAB);
  EXPECT_EQ(FocusName(), u"Check_all");
  Window.Find<TImageNote>(u"ImageNote_3").Focus();
  for (const int Key : {VK_DOWN, VK_DOWN, VK_DOWN, VK_UP})
    Type(Key);
  EXPECT_EQ(Window.Happened,
            (TNames{u"ImageNote_3", u"ImageNote_4", u"ImageNote_5", u"ImageNote_4"}));
}

TEST_F(Form, EnterEscapeAndAccessKeysPressTheirButtons) {
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  Dialog.Happened.clear();
  Type(VK_RETURN); // in the list: the default button
  Dialog.Find<TButton>(u"Help").Focus();
  Type(VK_RETURN); // its own
  Type(VK_SPACE);
  TypeWithAlt(u's');
  EXPECT_EQ(Dialog.Happened, (TNames{u"Scan", u"Help", u"Help", u"Scan"}));
  Dialog.Happened.clear();
  Dialog.Find<TButton>(u"Scan").SetEnabled(false);
  Dialog.Find<TListView>(u"List").Focus();
  Type(VK_RETURN);
  EXPECT_EQ(Dialog.Happened, TNames{}) << "a disabled default button";
  Type(VK_ESCAPE);
  EXPECT_EQ(Dialog.Happened, (TNames{u"Close", u"demo_dialog"}));
  EXPECT_FALSE(Dialog.Visible());
}

// ---- life ------------------------------------------------------------------------------------

TEST_F(Form, AModalFormHoldsTheOneAboveUntilItIsClosed) {
  TDemoWindow Window(Look);
  Window.Show();
  TDemoDialog Dialog(Look, &Window);
  bool AboveWasFree = true;
  // The close box of the frame.
  PostMessageW(Dialog.Handle(), WM_CLOSE, 0, 0);
  Dialog.Bind(TEvent::Show, TNotify([&](TComponent &) { Dialog.Happened.emplace_back(u"shown"); }));
  Dialog.Bind(TEvent::Close, TNotify([&](TComponent &) {
                AboveWasFree = IsWindowEnabled(Window.Handle());
                Dialog.Happened.emplace_back(u"closed");
              }));
  EXPECT_TRUE(Dialog.ShowModal());
  EXPECT_EQ(Dialog.Happened, (TNames{u"shown", u"Close", u"closed"}))
      << "the close box presses the cancel button";
  EXPECT_TRUE(AboveWasFree);
  EXPECT_TRUE(IsWindowEnabled(Window.Handle()));
  EXPECT_EQ(GetActiveWindow(), Window.Handle());
}

TEST_F(Form, AModalFormGoesOnlyWhenItsHandlersHaveEnded) {
  TDemoWindow Window(Look);
  Window.Show();
  TDemoDialog Dialog(Look, &Window);
  bool AboveWasFree = true;
  auto &Scan = Dialog.Find<TButton>(u"Scan");
  Scan.Bind(TEvent::Click, TNotify([&](TComponent &) {
              Press(Dialog.Find<TButton>(u"Close")); // while the handler works and pumps
              AboveWasFree = IsWindowEnabled(Window.Handle());
              Dialog.Happened.emplace_back(u"worked");
            }));
  PostMessageW(Scan.Handle(), BM_CLICK, 0, 0);
  EXPECT_TRUE(Dialog.ShowModal());
  EXPECT_FALSE(AboveWasFree);
  EXPECT_EQ(Dialog.Happened, (TNames{u"demo_dialog", u"Close", u"worked", u"demo_dialog"}));
}

TEST_F(Form, AKeyThatIsHeldDownPressesOnce) {
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  constexpr LPARAM Held = 1 | LPARAM{KF_REPEAT} << 16;
  Dialog.Find<TButton>(u"Scan").Focus();
  for (const int Key : {VK_RETURN, VK_SPACE}) {
    Dialog.Happened.clear();
    PostKey(Key);
    PostMessageW(GetFocus(), WM_KEYDOWN, static_cast<WPARAM>(Key), Held);
    PumpMessages();
    EXPECT_EQ(Dialog.Happened, TNames{u"Scan"}) << Key;
  }
  PostMessageW(GetFocus(), WM_KEYDOWN, VK_ESCAPE, Held); // it closed the form before
  PumpMessages();
  EXPECT_TRUE(Dialog.Visible());
}

TEST_F(Form, AModalFormIsClosedBeforeTheOneAbove) {
  TDemoWindow Window(Look);
  Window.Show();
  TDemoDialog Dialog(Look, &Window);
  auto &Scan = Dialog.Find<TButton>(u"Scan");
  Scan.Bind(TEvent::Click, TNotify([&](TComponent &) {
              PostMessageW(Window.Handle(), WM_CLOSE, 0, 0); // as the system may ask any window
              PumpMessages();
              EXPECT_TRUE(Dialog.Visible()) << "its handler has not ended";
              EXPECT_TRUE(Window.Visible());
            }));
  PostClick(Scan);
  EXPECT_TRUE(ShowModalForm(Dialog));
  EXPECT_TRUE(WaitUntil([&] { return !Window.Visible(); }));
  Window.Show();
  TDemoDialog Next(Look, &Window);
  PostMessageW(Next.Handle(), WM_CLOSE, 0, 0);
  EXPECT_TRUE(ShowModalForm(Next));
  PumpMessages();
  EXPECT_TRUE(Window.Visible()) << "that wish has come true already";
}

TEST_F(Form, TheRequestToEndReachesTheOuterLoop) {
  TDemoWindow Window(Look);
  Window.Show();
  TDemoDialog Dialog(Look, &Window);
  PostQuitMessage(3);
  EXPECT_FALSE(Dialog.ShowModal());
  EXPECT_TRUE(IsWindowEnabled(Window.Handle()));
  EXPECT_FALSE(LoopUntil([] { return false; }));
  MSG Message;
  EXPECT_TRUE(PeekMessageW(&Message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(Form, WhatAHandlerThrowsComesOutOfTheLoop) {
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  auto &Help = Dialog.Find<TButton>(u"Help");
  Help.Bind(TEvent::Click, TNotify([](TComponent &) { throw std::runtime_error("broken"); }));
  EXPECT_THROW(Press(Help), std::runtime_error);
  PumpMessages();
  EXPECT_EQ(Dialog.Happened, TNames{u"demo_dialog"}) << "and the form lives on";
}

// ---- layout -------------------------------------------------------------------------------------

// Twice as long, as a translation can be.
void Lengthen(TForm &Form) {
  const TLayoutPause Pause(Form);
  for (const auto &Component : Form.Components())
    Component->VisitTexts([](std::u16string_view, std::u16string &Text) { Text += u" " + Text; });
}

TEST_F(Form, LaysOutAtEveryScaleAndForLongTexts) {
  for (const int Dpi : {96, 120, 144, 192}) {
    const std::string Why = std::to_string(Dpi);
    TLook Scaled(Dpi);
    TDemoWindow Window(Scaled);
    TDemoDialog Dialog(Scaled, nullptr);
    EXPECT_GE(Window.LeastClientSize().Width, 760 * Dpi / 96);
    for (TForm *Each : std::initializer_list<TForm *>{&Window, &Dialog}) {
      Each->Show();
      ExpectWellLaidOut(*Each, Why);
      const TSize Before = Each->LeastClientSize();
      Lengthen(*Each);
      ExpectWellLaidOut(*Each, Why + ", long texts");
      EXPECT_GE(Each->LeastClientSize().Height, Before.Height);
      Each->SetClientSize(
          {Each->LeastClientSize().Width + 150, Each->LeastClientSize().Height + 90});
      ExpectWellLaidOut(*Each, Why + ", larger");
    }
  }
}

TEST_F(Form, AWrappedTextGrowsDownwardsAndMovesWhatIsBelow) {
  TDemoDialog Dialog(Look, nullptr);
  Dialog.Show();
  const TRect List = Dialog.Find<TControl>(u"List").Bounds();
  const TRect Close = Dialog.Find<TControl>(u"Close").Bounds();
  const int Height = Dialog.Bounds().Height;
  auto &Text = Dialog.Find<TLabel>(u"Text");
  const int Line = Text.Bounds().Height;
  std::u16string Long;
  for (int Word = 0; Word < 60; ++Word)
    Long += u"word ";
  Text.SetText(Long);
  const int Growth = Text.Bounds().Height - Line;
  EXPECT_GT(Growth, 2 * Line);
  EXPECT_EQ(Dialog.Bounds().Height - Height,
            Dialog.Find<TControl>(u"Close").Bounds().Top - Close.Top);
  EXPECT_GT(Dialog.Find<TControl>(u"List").Bounds().Top, List.Top + Growth / 2);
  EXPECT_EQ(Dialog.Find<TControl>(u"List").Bounds().Height, List.Height);
}

TEST_F(Form, FollowsItsWindowDownToTheLeastSize) {
  TDemoWindow Window(Look);
  Window.Show();
  const TRect List = Window.Find<TControl>(u"List").Bounds();
  const TRect Status = Window.Find<TControl>(u"Status").Bounds();
  RECT Frame;
  GetWindowRect(Window.Handle(), &Frame);
  const auto Resize = [&](int Wider, int Higher) {
    SetWindowPos(Window.Handle(), nullptr, 0, 0, Frame.right - Frame.left + Wider,
                 Frame.bottom - Frame.top + Higher, SWP_NOMOVE | SWP_NOZORDER);
    PumpMessages();
  };
  Resize(100, 50);
  EXPECT_EQ(Window.Find<TControl>(u"List").Bounds(),
            (TRect{List.Left, List.Top, List.Width + 100, List.Height + 50}));
  EXPECT_EQ(Window.Find<TControl>(u"Status").Bounds(),
            (TRect{0, Status.Top + 50, Status.Width + 100, Status.Height}));
  Resize(-300, -300);
  EXPECT_EQ(Window.Find<TControl>(u"List").Bounds(), List);
  for (const int Command : {SW_MINIMIZE, SW_RESTORE, SW_MAXIMIZE, SW_MINIMIZE, SW_RESTORE}) {
    ShowWindow(Window.Handle(), Command);
    PumpMessages();
  }
  ShowWindow(Window.Handle(), SW_RESTORE); // from its largest size
  PumpMessages();
  EXPECT_EQ(Window.Find<TControl>(u"List").Bounds(), List) << "back from the task bar";
}

TEST_F(Form, ATextOfAnyLengthIsShortenedAndToldInFullByItsHint) {
  TDemoWindow Window(Look);
  Window.Show();
  auto &Key = Window.Find<TLabel>(u"Key");
  EXPECT_TRUE(Key.Shortened());
  EXPECT_EQ(Key.ShownHint(), Key.Text());
  const TRect Place = Key.Bounds();
  Key.SetText(u"short");
  EXPECT_FALSE(Key.Shortened());
  EXPECT_EQ(Key.ShownHint(), u"");
  EXPECT_EQ(Key.Bounds(), Place);
  // A list's own windows of that kind know nothing of controls.
  const auto &List = Window.Find<TListView>(u"List");
  NMTTDISPINFOW Asked{};
  Asked.hdr = {List.Handle(), 1, TTN_GETDISPINFOW};
  SendMessageW(List.Handle(), WM_NOTIFY, 1, reinterpret_cast<LPARAM>(&Asked));
  EXPECT_EQ(Asked.lpszText, nullptr);
}

// ---- texts
// ----------------------------------------------------------------------------------------

TEST_F(Form, ShowsATranslatorEveryTextUnderItsName) {
  TDemoWindow Window(Look);
  TDemoDialog Dialog(Look, nullptr);
  TNames Seen;
  for (const TForm *Each : std::initializer_list<const TForm *>{&Window, &Dialog})
    for (const auto &Component : Each->Components())
      Component->VisitTexts([&](std::u16string_view Property, std::u16string &Text) {
        Seen.push_back(Component->Name() + u"." + std::u16string(Property));
        Text += u"!";
      });
  for (const char16_t *Name :
       {u"Scan.Caption", u"BarMore.Caption", u"ImageNote_1.Hint", u"Title.Caption",
        u"List.Columns[2].Caption", u"Status.Panels[1].Text", u"Links.Items[1].Caption",
        u"Group.Caption", u"Check_all.Caption"})
    EXPECT_EQ(std::count(Seen.begin(), Seen.end(), Name),
              std::u16string_view(Name) == u"Scan.Caption" ? 2 : 1)
        << ToUtf8(Name);
  EXPECT_EQ(std::count(Seen.begin(), Seen.end(), u"Line.Caption"), 0) << "a line has no text";
  EXPECT_EQ(Window.Find<TListView>(u"List").ColumnCaption(2), u"Registry key!");
  EXPECT_EQ(Window.Find<TStatusBar>(u"Status").PanelText(1), u"!");
  EXPECT_EQ(Window.Find<TMenuItem>(u"BarMore").Caption(), u"More!");
  EXPECT_EQ(Window.Find<TImageNote>(u"ImageNote_1").Hint(), u"Show Summary!");
  EXPECT_EQ(Dialog.Find<TLabelNote>(u"Links").Items()[1], u"Second link!");
}

} // namespace
} // namespace hivesweep
