#include "cli/Commands.h"
#include "cli/Input.h"
#include "cli/ListReport.h"
#include "cli/Session.h"

namespace hivesweep {

namespace {

class TCellLabel final : public TStatusLabel {
public:
  void SetText(std::u16string_view Text) override { Cell = Text; }
  std::u16string Cell;
};

} // namespace

TExitCode RunStatistics(TCliHost &Host, const TOptions &Options) {
  TSession Session = OpenSession(Host, Options, false);
  const auto Data = OpenData(Host.Console, Session, TFolderUse::Reads);
  RequireReadable(Session, Data->Paths.MainIniPath);
  TCellLabel LastScan, LastClean, Total;
  // A script is better served by an empty text than by a word.
  Data->LoadSummary(LastScan, LastClean, Total, Options.Format == TFormat::Text ? u"None" : u"");
  TListReport List("statistics", {{u"Last scan", u"lastScan"},
                                  {u"Last clean", u"lastClean"},
                                  {u"Problems fixed", u"total", TCellKind::Number}});
  List.Rows.push_back({LastScan.Cell, LastClean.Cell, Total.Cell});
  WriteList(Host.Console, Options, List);
  return TExitCode::Done;
}

} // namespace hivesweep
