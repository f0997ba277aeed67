#include "tests/ui/window/OtherWindows.h"

#include <gtest/gtest.h>

#include "platform/Text.h"
#include "tests/controls/User.h"

namespace hivesweep {

namespace {

struct TSearchFor {
  std::u16string_view Class;
  DWORD ProcessId;
  std::vector<HWND> Found;
};

BOOL CALLBACK Look(HWND Window, LPARAM Data) {
  auto &For = *reinterpret_cast<TSearchFor *>(Data);
  DWORD Owner = 0;
  GetWindowThreadProcessId(Window, &Owner);
  if ((For.ProcessId == 0 || For.ProcessId == Owner) &&
      (For.Class.empty() || ClassOf(Window) == For.Class))
    For.Found.push_back(Window);
  return TRUE;
}

} // namespace

TStartedProgram::TStartedProgram(const std::u16string &Path) {
  std::u16string Line = u'"' + Path + u'"';
  STARTUPINFOW Start = {};
  Start.cb = sizeof Start;
  EXPECT_TRUE(CreateProcessW(nullptr, Wide(Line.data()), nullptr, nullptr, FALSE, 0, nullptr,
                             nullptr, &Start, &Info_))
      << ToUtf8(Path);
}

TStartedProgram::~TStartedProgram() {
  if (!HasEnded())
    TerminateProcess(Info_.hProcess, 99);
  CloseHandle(Info_.hThread);
  CloseHandle(Info_.hProcess);
}

bool TStartedProgram::HasEnded() const {
  return WaitForSingleObject(Info_.hProcess, 0) == WAIT_OBJECT_0;
}

DWORD TStartedProgram::ExitCode() const {
  DWORD Code = 0;
  GetExitCodeProcess(Info_.hProcess, &Code);
  return Code;
}

std::vector<HWND> FindWindows(std::u16string_view Class, DWORD ProcessId) {
  TSearchFor For{Class, ProcessId, {}};
  EnumWindows(Look, reinterpret_cast<LPARAM>(&For));
  return For.Found;
}

std::vector<HWND> FindVisibleWindows(std::u16string_view Class, DWORD ProcessId) {
  std::vector<HWND> Found = FindWindows(Class, ProcessId);
  std::erase_if(Found, [](HWND Window) { return !IsWindowVisible(Window); });
  return Found;
}

HWND FindChild(HWND Window, std::u16string_view Class) {
  TSearchFor For{Class, 0, {}};
  EnumChildWindows(Window, Look, reinterpret_cast<LPARAM>(&For));
  return For.Found.empty() ? nullptr : For.Found.front();
}

std::u16string TextOf(HWND Window) {
  wchar_t Text[512] = L"";
  DWORD_PTR Length = 0;
  // Not for ever: the other program may be on its way to its end.
  SendMessageTimeoutW(Window, WM_GETTEXT, std::size(Text), reinterpret_cast<LPARAM>(Text),
                      SMTO_ABORTIFHUNG, 2'000, &Length);
  return FromWide(Text);
}

std::u16string ClassOf(HWND Window) {
  wchar_t Name[256] = L"";
  GetClassNameW(Window, Name, static_cast<int>(std::size(Name)));
  return FromWide(Name);
}

void CloseAll(std::u16string_view Class) {
  for (const HWND Window : FindWindows(Class))
    PostMessageW(Window, WM_CLOSE, 0, 0);
  EXPECT_TRUE(WaitUntil([&] { return FindWindows(Class).empty(); })) << ToUtf8(Class);
}

} // namespace hivesweep
