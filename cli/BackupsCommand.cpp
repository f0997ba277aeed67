#include "cli/Commands.h"
#include "cli/ListReport.h"
#include "cli/Session.h"
#include "platform/Text.h"
#include "repair/BackupText.h"

namespace hivesweep {

namespace {

// "2009-07-15 14:30:05": sorts as it reads.
std::u16string TimeCell(const TLocalTime &Time) {
  const std::u16string Text = DateTimeText(Time);
  return Text.substr(6, 4) + u"-" + Text.substr(0, 2) + u"-" + Text.substr(3, 2) + Text.substr(10);
}

std::u16string_view RecordCell(TUndoState Record) {
  switch (Record) {
  case TUndoState::Damaged:
    return u"damaged";
  case TUndoState::Unreadable:
    return u"unreadable";
  case TUndoState::Whole:
  case TUndoState::None:
    break;
  }
  return FlagCell(Record == TUndoState::Whole);
}

} // namespace

TExitCode RunBackups(TCliHost &Host, const TOptions &Options) {
  TSession Session = OpenSession(Host, Options, false);
  const auto Data = OpenData(Host.Console, Session, TFolderUse::Reads);
  TError Error;
  const std::vector<TBackupEntry> Backups = Data->EnumerateBackups(&Error);
  if (Error)
    throw TFailure(TExitCode::Failed, WordsOf(Error));
  TListReport List("backups", {{u"Name", u"name"},
                               {u"Time", u"time"},
                               {u"Changes", u"changes", TCellKind::Number},
                               {u"Bytes", u"size", TCellKind::Number},
                               {u"Text", u"text", TCellKind::Flag},
                               {u"Exact record", u"exact", TCellKind::Flag}});
  for (const TBackupEntry &Backup : Backups) {
    List.Rows.push_back(
        {Backup.Name, TimeCell(Backup.Time), ToDecimal(static_cast<std::uint64_t>(Backup.Changes)),
         ToDecimal(static_cast<std::uint64_t>(Backup.Size)),
         std::u16string(FlagCell(Backup.HasText)), std::u16string(RecordCell(Backup.Record))});
  }
  WriteList(Host.Console, Options, List);
  return TExitCode::Done;
}

} // namespace hivesweep
