#include "platform/Console.h"

#include <algorithm>
#include <atomic>
#include <iterator>

#include "platform/Columns.h"
#include "platform/Lock.h"
#include "platform/Text.h"
#include "platform/win32/Win32.h"

#include <shellapi.h>

namespace hivesweep {

namespace {

std::atomic<bool> Interrupted = false;

HANDLE StreamHandle(TConsoleStream Stream) {
  return GetStdHandle(Stream == TConsoleStream::Output ? STD_OUTPUT_HANDLE : STD_ERROR_HANDLE);
}

bool WriteCharacters(HANDLE Console, std::u16string_view Text) {
  // The console takes at most 64 KB at once.
  constexpr std::size_t Most = 8192;
  while (!Text.empty()) {
    std::size_t Part = std::min(Text.size(), Most);
    const bool EndsInHalf = (Text[Part - 1] & 0xFC00) == 0xD800;
    if (EndsInHalf && Part < Text.size())
      --Part;
    DWORD Written = 0;
    if (!WriteConsoleW(Console, Text.data(), static_cast<DWORD>(Part), &Written, nullptr) ||
        Written == 0)
      return false;
    Text.remove_prefix(Written);
  }
  return true;
}

bool WriteBytes(HANDLE File, std::string_view Bytes) {
  while (!Bytes.empty()) {
    const DWORD Part = static_cast<DWORD>(std::min<std::size_t>(Bytes.size(), 1u << 20));
    DWORD Written = 0;
    if (!WriteFile(File, Bytes.data(), Part, &Written, nullptr) || Written == 0)
      return false;
    Bytes.remove_prefix(Written);
  }
  return true;
}

// Runs in a thread of the system's own.
BOOL WINAPI OnControl(DWORD Kind) {
  if (Kind != CTRL_C_EVENT && Kind != CTRL_BREAK_EVENT)
    return FALSE;
  return Interrupted.exchange(true) ? FALSE : TRUE;
}

} // namespace

std::vector<std::string> ConsoleArguments(int, char **) {
  std::vector<std::string> Out;
  int Count = 0;
  wchar_t **const Values = CommandLineToArgvW(GetCommandLineW(), &Count);
  for (int Index = 1; Values && Index < Count; ++Index)
    Out.push_back(ToUtf8(FromWide(Values[Index])));
  LocalFree(Values);
  return Out;
}

bool ConsoleWrite(TConsoleStream Stream, std::string_view Utf8) {
  const HANDLE Handle = StreamHandle(Stream);
  return IsTerminal(Stream) ? WriteCharacters(Handle, FromUtf8(Utf8)) : WriteBytes(Handle, Utf8);
}

bool IsTerminal(TConsoleStream Stream) {
  DWORD Mode = 0;
  return GetConsoleMode(StreamHandle(Stream), &Mode) != 0;
}

int TerminalWidth(TConsoleStream Stream) {
  CONSOLE_SCREEN_BUFFER_INFO Screen = {};
  if (GetConsoleScreenBufferInfo(StreamHandle(Stream), &Screen))
    return Screen.srWindow.Right - Screen.srWindow.Left + 1;
  return ColumnsOfEnvironment();
}

bool InputIsTerminal() {
  DWORD Mode = 0;
  return GetConsoleMode(GetStdHandle(STD_INPUT_HANDLE), &Mode) != 0;
}

std::optional<std::string> ConsoleReadLine() {
  std::u16string Line;
  while (!Line.ends_with(u'\n')) {
    char16_t Part[256];
    DWORD Count = 0;
    // Ctrl+C is a success without any characters, and so is an end of the input.
    if (!ReadConsoleW(GetStdHandle(STD_INPUT_HANDLE), Part, std::size(Part), &Count, nullptr) ||
        Count == 0)
      return std::nullopt;
    Line.append(Part, Count);
  }
  Line.erase(Line.find_first_of(u"\r\n"));
  return ToUtf8(Line);
}

std::optional<std::string> ConsoleReadAll(std::size_t Most) {
  std::string Out;
  for (std::string Part(1u << 16, '\0'); !Interrupted;) {
    const auto Wanted = static_cast<DWORD>(std::min(Part.size(), Most - Out.size()));
    DWORD Count = 0;
    const BOOL Read =
        ReadFile(GetStdHandle(STD_INPUT_HANDLE), Part.data(), Wanted, &Count, nullptr);
    // This is how a pipe ends.
    if (!Read && GetLastError() != ERROR_BROKEN_PIPE)
      break;
    if (!Read || Count == 0)
      return Out;
    Out.append(Part, 0, Count);
  }
  return std::nullopt;
}

void CatchInterrupt() { SetConsoleCtrlHandler(OnControl, TRUE); }

bool WasInterrupted() { return Interrupted; }

std::uint64_t MillisecondTicks() {
  // This counter begins again after 49 days; Windows 2000 has no other.
  static TLock Lock;
  static std::uint64_t Last = 0;
  const TLockGuard Guard(Lock);
  const auto Passed = static_cast<DWORD>(GetTickCount() - static_cast<DWORD>(Last));
  Last += Passed;
  return Last;
}

} // namespace hivesweep
