#include "cli/Application.h"

#include "cli/Commands.h"
#include "cli/Failure.h"
#include "cli/Options.h"
#include "cli/Output.h"

namespace hivesweep {

namespace {

// A new command is a new row.
constexpr TCommand Commands[] = {
    {"areas", "Lists the 17 areas: number, switch, caption, risk, on or off",
     TakesSource | TakesOutput, RunAreas},
    {"scan", "Scans the registry and lists what points at missing files",
     TakesSource | TakesOutput | TakesAreas | TakesScan, RunScan},
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
    Complain(Host.Console, Failure.what());
  } catch (const std::exception &Failure) {
    Complain(Host.Console, std::string("failed: ") + Failure.what());
  }
  return static_cast<int>(Code);
}

} // namespace hivesweep
