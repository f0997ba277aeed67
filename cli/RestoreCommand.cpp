#include "cli/BackupName.h"
#include "cli/Commands.h"
#include "cli/FixReport.h"
#include "cli/Output.h"
#include "cli/Question.h"
#include "cli/Session.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

std::string NameOfFailure(const TPutFailure &Failure) {
  std::string What = Failure.Value.empty() ? "" : "\"" + ToUtf8(Failure.Value) + "\" of ";
  if (Failure.Part != TPutPart::Content)
    What = Failure.Part == TPutPart::ClassName ? "the class name of "
                                               : "the owner and the permissions of ";
  return What + ToUtf8(Failure.Path) +
         (Failure.Status == TRegStatus::Denied ? " (access denied)" : "");
}

// False when it did not go as it should have.
bool Tell(TCliConsole &Console, const TRestoreReport &Report) {
  for (const TError &Note : Report.Notes)
    Complain(Console, WordsOf(Note));
  for (const TError &Remark : Report.Remarks)
    Complain(Console, WordsOf(Remark));
  for (const TPutFailure &Failure : Report.NotRestored)
    Complain(Console, "could not restore " + NameOfFailure(Failure));
  if (Report.Failure)
    throw TFailure(TExitCode::Failed, WordsOf(Report.Failure));
  return Report.Notes.empty() && Report.NotRestored.empty();
}

const char *Outcome(bool AllWell, bool Changed) {
  if (Changed)
    return AllWell ? ": restored\n" : ": restored as far as possible\n";
  return AllWell ? ": everything was already as it was then\n" : ": nothing was changed\n";
}

} // namespace

TExitCode RunRestore(TCliHost &Host, const TOptions &Options) {
  TCliConsole &Console = Host.Console;
  RequireAnswer(Console, Options);
  // From here on the first Ctrl+C does nothing: half a restore is worse than a whole one.
  Console.CatchInterrupt();
  TSession Session = OpenSession(Host, Options, true);
  const auto Data = OpenData(Host.Console, Session, TFolderUse::Reads);
  const TBackupEntry Backup = FindBackup(*Data, Options.Words.front());
  if (!IsWanted(Console, Options, "Restore " + ToUtf8(Backup.Name) + "?"))
    return TExitCode::Done;

  constexpr std::uint32_t Slice = 100;
  if (Data->RestoreBackup(Backup.Name))
    while (!Data->ContinueRestore(Slice))
      Session.Platform.Messages->Pump();
  const TRestoreReport &Report = Data->RestoreReport();
  const bool AllWell = Tell(Console, Report);
  WriteOutput(Console, ToUtf8(Backup.Name) + Outcome(AllWell, !Report.UndoName.empty()));
  if (!Report.UndoName.empty())
    WriteOutput(Console, UndoLine(Options, Report.UndoName));
  return AllWell ? TExitCode::Done : TExitCode::Failed;
}

} // namespace hivesweep
