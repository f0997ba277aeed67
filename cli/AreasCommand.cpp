#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/Output.h"
#include "cli/ScanReport.h"
#include "cli/Session.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

TExitCode RunAreas(TCliHost &Host, const TOptions &Options) {
  TSession Session = OpenSession(Host, Options, false);
  RequireReadable(Session, Session.Paths.MainIniPath);
  const TAreaSwitches Switches =
      ReadAreaSwitches(*Session.Platform.Profiles, Session.Paths.MainIniPath);
  std::vector<TAreaRow> Rows;
  Rows.reserve(Areas.size());
  for (const TArea &Area : Areas)
    Rows.push_back({Area, Switches[AreaIndex(Area.Number)]});
  const std::string Text = Options.Format == TFormat::Json ? AreasJson(Rows)
                           : Options.Format == TFormat::Csv
                               ? AreasCsv(Rows)
                               : AreasText(Rows, WidthOfResult(Host.Console, Options.OutputFile));
  WriteResult(Host.Console, Options.OutputFile, Text);
  return TExitCode::Done;
}

} // namespace hivesweep
