// What the program's start stands on.
#include <gtest/gtest.h>

#include <stdexcept>

#include "controls/Form.h"
#include "controls/MessageLoop.h"
#include "platform/Text.h"
#include "platform/win32/Win32.h"
#include "tests/controls/User.h"
#include "ui/Foreground.h"
#include "ui/LastResort.h"
#include "ui/Rights.h"

namespace hivesweep {
namespace {

TEST(LastResort, ErrorIsToldAndEndsWithOne) {
  EXPECT_EQ(TellErrors([] { return 7; }), 7);
  static const struct {
    const char *Why;
    int (*Program)();
    const char16_t *Told;
  } Cases[] = {
      {"an error", []() -> int { throw std::runtime_error("no disk"); }, u"no disk"},
      {"a thing of any kind", []() -> int { throw 5; }, u"unknown"},
  };
  for (const auto &C : Cases) {
    const TBoxAnswer Answer(IDOK);
    EXPECT_EQ(TellErrors(C.Program), 1) << C.Why;
    EXPECT_TRUE(Answer.Text().ends_with(C.Told)) << C.Why << ": " << ToUtf8(Answer.Text());
  }
}

TEST(ForceForeground, AnswersForWhatIsInFrontAndGivesTheLockItsTimeBack) {
  constexpr UINT_PTR Time = 123'456;
  DWORD Before = 0;
  SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &Before, 0);
  SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0, reinterpret_cast<void *>(Time), 0);
  TLook Look;
  TForm Form(Look, nullptr, {.Name = u"Form", .Caption = u"Form", .Size = {300, 200}}, {});
  TForm Other(Look, nullptr, {.Name = u"Other", .Caption = u"Other", .Size = {300, 200}}, {});
  Form.Show();
  Other.Show();
  ShowWindow(Form.Handle(), SW_MINIMIZE);
  PumpMessages();
  ASSERT_NE(GetForegroundWindow(), Form.Handle());
  static const struct {
    const char *Why;
    bool Child;
    bool InFront;
  } Cases[] = {{"minimised", false, true},
               {"in front already", false, true},
               // No such window can be in front, so that all ways are tried.
               {"a window inside another one", true, false}};
  const HWND Child = CreateWindowExW(0, L"STATIC", L"", WS_CHILD, 0, 0, 9, 9, Other.Handle(),
                                     nullptr, nullptr, nullptr);
  for (const auto &C : Cases) {
    const HWND Window = C.Child ? Child : Form.Handle();
    EXPECT_EQ(ForceForeground(Window), C.InFront) << C.Why;
    EXPECT_EQ(GetForegroundWindow() == Window, C.InFront) << C.Why;
    EXPECT_FALSE(IsIconic(Window)) << C.Why;
    DWORD After = 0;
    SystemParametersInfoW(SPI_GETFOREGROUNDLOCKTIMEOUT, 0, &After, 0);
    EXPECT_EQ(After, Time) << C.Why;
  }
  SystemParametersInfoW(SPI_SETFOREGROUNDLOCKTIMEOUT, 0,
                        reinterpret_cast<void *>(static_cast<UINT_PTR>(Before)), 0);
}

// This thread without what it has as an administrator, as user account control starts
// programs.
class TWithoutRights {
public:
  TWithoutRights() {
    SID_IDENTIFIER_AUTHORITY Authority = {SECURITY_NT_AUTHORITY};
    SID_AND_ATTRIBUTES Group = {};
    AllocateAndInitializeSid(&Authority, 2, SECURITY_BUILTIN_DOMAIN_RID, DOMAIN_ALIAS_RID_ADMINS, 0,
                             0, 0, 0, 0, 0, &Group.Sid);
    HANDLE Own = nullptr;
    HANDLE Less = nullptr;
    EXPECT_TRUE(OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &Own));
    EXPECT_TRUE(CreateRestrictedToken(Own, 0, 1, &Group, 0, nullptr, 0, nullptr, &Less));
    EXPECT_TRUE(ImpersonateLoggedOnUser(Less));
    CloseHandle(Less);
    CloseHandle(Own);
    FreeSid(Group.Sid);
  }
  TWithoutRights(const TWithoutRights &) = delete;
  TWithoutRights &operator=(const TWithoutRights &) = delete;
  ~TWithoutRights() { RevertToSelf(); }
};

TEST(Rights, AreThoseOfTheProcessAndNotOfItsUser) {
  EXPECT_TRUE(HasMachineRights()) << "Wine's user is an administrator";
  {
    const TWithoutRights Less;
    EXPECT_FALSE(HasMachineRights());
  }
  EXPECT_TRUE(HasMachineRights());
}

} // namespace
} // namespace hivesweep
