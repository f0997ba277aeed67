#include "cli/BackupName.h"
#include "cli/Commands.h"
#include "cli/Output.h"
#include "cli/Question.h"
#include "cli/Session.h"
#include "platform/Text.h"

namespace hivesweep {

TExitCode RunDelete(TCliHost &Host, const TOptions &Options) {
  RequireAnswer(Host.Console, Options);
  TSession Session = OpenSession(Host, Options, false);
  const auto Data = OpenData(Host.Console, Session, TFolderUse::Reads);
  const TBackupEntry Backup = FindBackup(*Data, Options.Words.front());
  const std::string Name = ToUtf8(Backup.Name);
  if (!IsWanted(Host.Console, Options,
                "Delete " + Name + "? What was fixed then can't be restored any more."))
    return TExitCode::Done;
  if (const TError Error = Data->DeleteBackup(Backup.Name))
    throw TFailure(TExitCode::Failed, Name + ": could not be deleted: " + WordsOf(Error));
  WriteOutput(Host.Console, Name + ": deleted\n");
  return TExitCode::Done;
}

} // namespace hivesweep
