#include "cli/Output.h"

#include "cli/Failure.h"
#include "cli/TerminalText.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"

namespace hivesweep {

void WriteOutput(TCliConsole &Console, std::string_view Utf8) {
  if (!Console.Write(TConsoleStream::Output, Utf8))
    throw TFailure(TExitCode::Failed, "standard output: could not be written");
}

void WriteResult(TCliConsole &Console, const std::optional<std::string> &File,
                 std::string_view Utf8) {
  if (!File)
    return WriteOutput(Console, Utf8);
  if (const TError Error = WriteWholeFile(PathFromBytes(*File), Utf8))
    throw TFailure(TExitCode::Failed, *File + ": could not be written: " + WordsOf(Error));
}

void Complain(TCliConsole &Console, std::string_view Utf8) {
  // A registry's data, or a word of the command line, may be of any length.
  constexpr int Longest = 2000;
  // There is no better place to tell that this could not be told.
  Console.Write(TConsoleStream::Error,
                "hivesweep-cli: " + ToUtf8(ShortenMiddle(Presentable(FromUtf8(Utf8)), Longest)) +
                    "\n");
}

int WidthOfResult(TCliConsole &Console, const std::optional<std::string> &File) {
  const int Width = File ? 0 : Console.Width(TConsoleStream::Output);
  // A terminal may go to the next line as soon as its last column is written, and
  // the line's end would then make an empty line.
  return Width > 1 ? Width - 1 : Width;
}

} // namespace hivesweep
