#include "cli/Commands.h"
#include "cli/Output.h"
#include "cli/ScanReport.h"
#include "cli/ScanRun.h"

namespace hivesweep {

namespace {

std::string Render(const TScanReport &Report, const TOptions &Options, TCliConsole &Console) {
  switch (Options.Format) {
  case TFormat::Json:
    return JsonReport(Report);
  case TFormat::Csv:
    return CsvReport(Report);
  case TFormat::Text:
    break;
  }
  return TextReport(Report, WidthOfResult(Console, Options.OutputFile));
}

} // namespace

TExitCode RunScan(TCliHost &Host, const TOptions &Options) {
  TScanRun Run(Host, Options);
  Run.Scan(Run.AreaFlags());
  if (Run.WasInterrupted)
    Complain(Host.Console, "stopped; this is what was found so far");
  const TScanReport Report(Run.Problems, Run.Engine, Options.ShowProtected);
  WriteResult(Host.Console, Options.OutputFile, Render(Report, Options, Host.Console));
  return Run.WasInterrupted ? TExitCode::Interrupted
         : Run.AnyFailed    ? TExitCode::Failed
                            : TExitCode::Done;
}

} // namespace hivesweep
