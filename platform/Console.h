// What a console program needs of the system that runs it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

enum class TConsoleStream { Output, Error };

// The program's arguments without its own name, in UTF-8. On Windows they are
// taken from the system, which keeps all letters; elsewhere from Count and Values.
std::vector<std::string> ConsoleArguments(int Count, char **Values);

// Writes UTF-8. A terminal gets characters, a file or pipe the bytes as they
// stand. False when it could not be written.
bool ConsoleWrite(TConsoleStream Stream, std::string_view Utf8);

bool IsTerminal(TConsoleStream Stream);

// The width in characters of the terminal behind the stream. Elsewhere the
// environment's COLUMNS, else 0: not known.
int TerminalWidth(TConsoleStream Stream);

// Somebody can be asked: standard input is a terminal.
bool InputIsTerminal();

// Waits for a line that the user types there; UTF-8, without its end. Nothing at the end
// of the input, after Ctrl+C, and when it can't be read.
std::optional<std::string> ConsoleReadLine();

// Reads standard input to its end, but no more than Most bytes of it. Nothing after Ctrl+C,
// and when it can't be read.
std::optional<std::string> ConsoleReadAll(std::size_t Most);

// From now on Ctrl+C only sets a flag (a second one ends the program).
void CatchInterrupt();
bool WasInterrupted();

// Milliseconds since some moment; for measuring how long something takes.
std::uint64_t MillisecondTicks();

} // namespace hivesweep
