#include "cli/Question.h"

#include <optional>
#include <string>

#include "cli/Failure.h"
#include "cli/Output.h"
#include "cli/TerminalText.h"
#include "platform/Text.h"

namespace hivesweep {

void RequireAnswer(TCliConsole &Console, const TOptions &Options) {
  if (!Options.Yes && !Console.InputIsTerminal())
    throw TWrongUse("there is no terminal on which to ask; --yes is expected");
}

bool IsWanted(TCliConsole &Console, const TOptions &Options, std::string_view Question) {
  if (Options.Yes)
    return true;
  // Where messages go: standard output may be a file.
  Console.Write(TConsoleStream::Error, ToUtf8(Presentable(FromUtf8(Question))) + " [y/N] ");
  const std::optional<std::string> Line = Console.ReadLine();
  if (!Line)
    throw TFailure(TExitCode::Interrupted, "stopped; nothing was changed");
  const std::u16string Typed = FromUtf8(*Line);
  const std::u16string_view Answer = Trim(Typed);
  if (EqualNoCase(Answer, u"y") || EqualNoCase(Answer, u"yes"))
    return true;
  Complain(Console, "nothing was changed");
  return false;
}

} // namespace hivesweep
