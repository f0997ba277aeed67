#include "cli/BackupName.h"

#include "cli/Failure.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"

namespace hivesweep {

TBackupEntry FindBackup(const TRegistryClean &Data, const std::string &Name) {
  TError Error;
  for (const TBackupEntry &Backup : Data.EnumerateBackups(&Error))
    if (Backup.Name == PathFromBytes(Name))
      return Backup;
  if (Error)
    throw TFailure(TExitCode::Failed, WordsOf(Error));
  throw TFailure(TExitCode::Failed, Name + ": there is no backup of that name in " +
                                        ToUtf8(Data.Paths.BackupFolderPath));
}

} // namespace hivesweep
