#include "cli/Application.h"

#include "cli/Commands.h"
#include "cli/Failure.h"
#include "cli/Options.h"
#include "cli/Output.h"

namespace hivesweep {

namespace {

constexpr TWord BackupWords[] = {{"NAME", "a backup's name, as the command backups lists it"}};
constexpr TWord IgnoreWords[] = {
    {"ACTION", "list, add, remove or check; check tells whether the\n"
               "key is ignored, by exit code 0, or not, by 1"},
    {"KEY", "the full path of a key, spelled as scan lists it", true},
    {"VALUE",
     "add: the value's name, as scan lists it; default:\nN/A, the whole key; \"--\" goes before "
     "one that begins\nwith \"-\"",
     true},
};

// A new command is a new row.
constexpr TCommand Commands[] = {
    {"areas", "Lists the 17 areas: number, switch, caption, risk, on or off",
     TakesSource | TakesFolder | TakesOutput, RunAreas},
    {"scan", "Scans the registry and lists what points at missing files",
     TakesSource | TakesFolder | TakesOutput | TakesAreas | TakesScan | TakesProgress, RunScan},
    {"fix", "Scans, and removes what points at missing files, after a question",
     TakesSource | TakesFolder | TakesAreas | TakesFix | TakesAnswer | TakesProgress, RunFix},
    {"backups", "Lists the backups that fixes and restores have left", TakesFolder | TakesOutput,
     RunBackups},
    {"restore", "Undoes the fix, or the restore, that left the backup", TakesFolder | TakesAnswer,
     RunRestore, BackupWords},
    {"delete", "Deletes the backup", TakesFolder | TakesAnswer, RunDelete, BackupWords},
    {"ignore", "Keeps the list of keys whose problems are not listed", TakesFolder | TakesOutput,
     RunIgnore, IgnoreWords},
    {"statistics", "Tells when the last scan and fix were, and how much was fixed",
     TakesFolder | TakesOutput, RunStatistics},
};

TExitCode Run(TCliHost &Host, const std::vector<std::string> &Arguments) {
  const TInvocation Invocation = ParseArguments(Arguments, Commands, Host.Version);
  if (Invocation.Command)
    return Invocation.Command->Run(Host, Invocation.Options);
  if (!Invocation.IsAsked) {
    Host.Console.Write(TConsoleStream::Error, Invocation.Text);
    return TExitCode::WrongUse;
  }
  WriteOutput(Host.Console, Invocation.Text);
  return TExitCode::Done;
}

} // namespace

int RunCli(TCliHost &Host, const std::vector<std::string> &Arguments) {
  TExitCode Code = TExitCode::Failed;
  try {
    Code = Run(Host, Arguments);
  } catch (const TFailure &Failure) {
    Code = Failure.Code;
    Complain(Host.Console, Failure.Message);
  } catch (const std::exception &Failure) {
    Complain(Host.Console, std::string("failed: ") + Failure.what());
  }
  return static_cast<int>(Code);
}

} // namespace hivesweep
