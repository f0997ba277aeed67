// The shipped program, started once and again.
#include <gtest/gtest.h>

#include <functional>

#include "controls/Form.h"
#include "platform/Text.h"
#include "tests/controls/User.h"
#include "tests/ui/window/OtherWindows.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/SingleInstance.h"

namespace hivesweep {
namespace {

const std::u16string Program = SHIPPED_FOLDER u"Hivesweep.exe";

// The program's main window, once it is there; null when it does not come.
HWND MainWindowOf(const TStartedProgram &Started) {
  HWND Main = nullptr;
  WaitUntil([&] {
    for (const HWND Window : FindVisibleWindows(u"", Started.Id()))
      if (!GetWindow(Window, GW_OWNER) && TextOf(Window) == u"Hivesweep")
        Main = Window;
    return Main != nullptr;
  });
  return Main;
}

bool ComesToFront(HWND Window) {
  return WaitUntil([&] { return GetForegroundWindow() == Window; });
}

// Something else that has the user's attention.
class TOtherWindow {
public:
  TOtherWindow() {
    Form_.Show();
    SetForegroundWindow(Form_.Handle());
    EXPECT_TRUE(ComesToFront(Form_.Handle()));
  }

private:
  TLook Look_;
  TForm Form_{Look_, nullptr, {.Name = u"Other", .Caption = u"Other", .Size = {300, 200}}, {}};
};

std::function<void()> LaterDone;
void CALLBACK DoLater(HWND, UINT, UINT_PTR Timer, DWORD) {
  KillTimer(nullptr, Timer);
  LaterDone();
}

// Does something when messages are handled.
void Later(const std::function<void()> &Do) {
  LaterDone = Do;
  SetTimer(nullptr, 0, 1, DoLater);
}

TEST(SingleInstance, SecondStartBringsTheFirstToTheFrontAndEndsWithoutAWindow) {
  const TStartedProgram First(Program);
  const HWND Main = MainWindowOf(First);
  ASSERT_TRUE(Main);
  static const struct {
    const char *Why;
    bool Minimised;
  } Cases[] = {{"behind another window", false}, {"minimised", true}};
  for (const auto &C : Cases) {
    const TOtherWindow Other;
    if (C.Minimised) {
      ShowWindow(Main, SW_MINIMIZE);
      ASSERT_TRUE(WaitUntil([&] { return IsIconic(Main); }));
    }
    const TStartedProgram Second(Program);
    bool HadWindow = false;
    EXPECT_TRUE(WaitUntil([&] {
      HadWindow |= !FindVisibleWindows(u"", Second.Id()).empty();
      return Second.HasEnded();
    })) << C.Why;
    EXPECT_FALSE(HadWindow) << C.Why;
    EXPECT_EQ(Second.ExitCode(), 0u) << C.Why;
    EXPECT_TRUE(ComesToFront(Main)) << C.Why;
    EXPECT_FALSE(IsIconic(Main)) << C.Why;
    EXPECT_FALSE(First.HasEnded()) << C.Why;
  }
  PostMessageW(Main, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return First.HasEnded(); }));
  EXPECT_EQ(First.ExitCode(), 0u);
}

TEST(SingleInstance, OfTwoStartsAtOnceOneIsLeft) {
  const TStartedProgram First(Program);
  const TStartedProgram Second(Program);
  EXPECT_TRUE(WaitUntil([&] { return First.HasEnded() || Second.HasEnded(); }));
  const TStartedProgram &Left = First.HasEnded() ? Second : First;
  EXPECT_TRUE(MainWindowOf(Left));
  EXPECT_FALSE(Left.HasEnded());
}

TEST(SingleInstance, CopyUnderAnotherNameIsAProgramOfItsOwn) {
  const std::u16string Copy = WindowPlatform().Folders->Temp() + u"Hivesweep copy.exe";
  ASSERT_TRUE(CopyFileW(Wide(Program), Wide(Copy), FALSE));
  {
    const TStartedProgram First(Program);
    const HWND Main = MainWindowOf(First);
    ASSERT_TRUE(Main);
    const TStartedProgram Second(Copy);
    const HWND Other = MainWindowOf(Second);
    EXPECT_TRUE(Other);
    EXPECT_NE(Other, Main);
    EXPECT_FALSE(First.HasEnded() || Second.HasEnded());
  }
  EXPECT_TRUE(
      WaitUntil([&] { return DeleteFileW(Wide(Copy)) || GetLastError() == ERROR_FILE_NOT_FOUND; }));
}

TEST(SingleInstance, OtherMessagesReachTheApplicationWindowUnchanged) {
  const TStartedProgram First(Program);
  ASSERT_TRUE(MainWindowOf(First));
  const std::vector<HWND> Found = FindWindows(u"HivesweepApplication", First.Id());
  ASSERT_EQ(Found.size(), 1u);
  const HWND App = Found.front();
  EXPECT_FALSE(IsWindowVisible(App));
  EXPECT_EQ(TextOf(App), u"Hivesweep");
  SendMessageW(App, WM_SETTEXT, 0, reinterpret_cast<LPARAM>(L"Other"));
  EXPECT_EQ(TextOf(App), u"Other");
  EXPECT_EQ(SendMessageW(App, WM_QUERYENDSESSION, 0, 0), 1);
  SendMessageW(App, WM_CLOSE, 0, 0);
  EXPECT_TRUE(IsWindow(App)) << "a later start is not heard any more";
}

// This very program as the instance that runs; a second start is its message.
class TInstanceTest : public testing::Test {
public:
  TInstanceTest() {
    EXPECT_TRUE(InitSingleInstance());
    const std::vector<HWND> Found = FindWindows(u"HivesweepApplication", GetCurrentProcessId());
    EXPECT_EQ(Found.size(), 1u);
    App_ = Found.front();
  }
  ~TInstanceTest() override { DoneSingleInstance(); }

protected:
  void StartAgain() const { PostMessageW(App_, RegisterWindowMessageW(L"window_test.exe"), 0, 0); }

  HWND App_;
  TLook Look_;
  TForm Main_{Look_, nullptr, {.Name = u"Main", .Caption = u"Main", .Size = {600, 400}}, {}};
};

TEST_F(TInstanceTest, StartThatComesBeforeTheMainWindowIsHeardWhenItIsThere) {
  StartAgain();
  PumpMessages();
  Main_.Show();
  const TOtherWindow Other;
  const TMainWindow Heard(Main_.Handle());
  EXPECT_TRUE(ComesToFront(Main_.Handle()));
}

TEST_F(TInstanceTest, DialogOverTheMainWindowComesToTheFrontAndNotWhatItDisabled) {
  const TMainWindow Heard(Main_.Handle());
  Main_.Show();
  TForm Dialog(Look_, &Main_, {.Name = u"Dialog", .Caption = u"Dialog", .Size = {300, 200}}, {});
  Later([&] {
    for (const bool MainWasActivated : {false, true}) {
      SetForegroundWindow(MainWasActivated ? Main_.Handle() : Dialog.Handle());
      const TOtherWindow Other;
      StartAgain();
      EXPECT_TRUE(ComesToFront(Dialog.Handle())) << MainWasActivated;
      EXPECT_FALSE(IsWindowEnabled(Main_.Handle())) << MainWasActivated;
    }
    Dialog.Close();
  });
  Dialog.ShowModal();
  EXPECT_TRUE(IsWindowEnabled(Main_.Handle()));
}

} // namespace
} // namespace hivesweep
