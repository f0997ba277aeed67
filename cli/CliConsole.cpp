#include "cli/CliConsole.h"

namespace hivesweep {

bool TSystemConsole::Write(TConsoleStream Stream, std::string_view Utf8) {
  return ConsoleWrite(Stream, Utf8);
}

bool TSystemConsole::IsTerminal(TConsoleStream Stream) { return hivesweep::IsTerminal(Stream); }

int TSystemConsole::Width(TConsoleStream Stream) { return TerminalWidth(Stream); }

bool TSystemConsole::InputIsTerminal() { return hivesweep::InputIsTerminal(); }

std::optional<std::string> TSystemConsole::ReadLine() { return ConsoleReadLine(); }

std::optional<std::string> TSystemConsole::ReadAll(std::size_t Most) {
  return ConsoleReadAll(Most);
}

void TSystemConsole::CatchInterrupt() { hivesweep::CatchInterrupt(); }

bool TSystemConsole::WasInterrupted() { return hivesweep::WasInterrupted(); }

std::uint64_t TSystemConsole::Ticks() { return MillisecondTicks(); }

} // namespace hivesweep
