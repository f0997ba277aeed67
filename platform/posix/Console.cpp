#include "platform/Console.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <ctime>

#include <poll.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include "platform/Columns.h"

namespace hivesweep {

namespace {

volatile std::sig_atomic_t Interrupted = 0;

int Descriptor(TConsoleStream Stream) {
  return Stream == TConsoleStream::Output ? STDOUT_FILENO : STDERR_FILENO;
}

void OnInterrupt(int) { Interrupted = 1; }

// False when there is none to come.
bool WaitForInput() {
  // Ctrl+C ends the wait, but for one that comes right before it begins.
  constexpr int Slice = 200;
  pollfd Input = {STDIN_FILENO, POLLIN, 0};
  int Ready = 0;
  while (Interrupted == 0 && Ready == 0) {
    Ready = poll(&Input, 1, Slice);
    if (Ready < 0 && errno == EINTR)
      Ready = 0;
  }
  return Ready > 0;
}

} // namespace

std::vector<std::string> ConsoleArguments(int Count, char **Values) {
  return Count > 0 ? std::vector<std::string>(Values + 1, Values + Count)
                   : std::vector<std::string>();
}

bool ConsoleWrite(TConsoleStream Stream, std::string_view Utf8) {
  while (!Utf8.empty()) {
    const ssize_t Written = write(Descriptor(Stream), Utf8.data(), Utf8.size());
    if (Written < 0 && errno == EINTR)
      continue;
    if (Written <= 0)
      return false;
    Utf8.remove_prefix(static_cast<std::size_t>(Written));
  }
  return true;
}

bool IsTerminal(TConsoleStream Stream) { return isatty(Descriptor(Stream)) != 0; }

int TerminalWidth(TConsoleStream Stream) {
  winsize Size = {};
  if (ioctl(Descriptor(Stream), TIOCGWINSZ, &Size) == 0 && Size.ws_col > 0)
    return Size.ws_col;
  return ColumnsOfEnvironment();
}

bool InputIsTerminal() { return isatty(STDIN_FILENO) != 0; }

// Byte by byte, so that what follows the line is left for the next one.
std::optional<std::string> ConsoleReadLine() {
  std::string Line;
  for (char Byte = 0; WaitForInput();) {
    const ssize_t Count = read(STDIN_FILENO, &Byte, 1);
    if (Count < 0 && errno == EINTR)
      continue;
    if (Count <= 0)
      break;
    if (Byte == '\n')
      return Line;
    Line.push_back(Byte);
  }
  return std::nullopt;
}

std::optional<std::string> ConsoleReadAll(std::size_t Most) {
  std::string Out;
  for (std::string Part(1u << 16, '\0'); WaitForInput();) {
    const ssize_t Count = read(STDIN_FILENO, Part.data(), std::min(Part.size(), Most - Out.size()));
    if (Count < 0 && errno == EINTR)
      continue;
    if (Count < 0)
      break;
    if (Count == 0)
      return Out;
    Out.append(Part, 0, static_cast<std::size_t>(Count));
  }
  return std::nullopt;
}

void CatchInterrupt() {
  struct sigaction Action = {};
  Action.sa_handler = OnInterrupt;
  sigemptyset(&Action.sa_mask);
  // The second one meets the default again, which ends the program.
  Action.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
  sigaction(SIGINT, &Action, nullptr);
}

bool WasInterrupted() { return Interrupted != 0; }

std::uint64_t MillisecondTicks() {
  timespec Now = {};
  clock_gettime(CLOCK_MONOTONIC, &Now);
  return static_cast<std::uint64_t>(Now.tv_sec) * 1000 +
         static_cast<std::uint64_t>(Now.tv_nsec) / 1'000'000;
}

} // namespace hivesweep
