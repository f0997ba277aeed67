#include "cli/FixReport.h"

#include <algorithm>

#include "cli/Output.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

struct TReason {
  TRemoval Why;
  const char *Sentence; // of one problem
  const char *Counted;  // of many
};

constexpr TReason Reasons[] = {
    {TRemoval::GoneAlready, "was gone already: ", "gone already"},
    {TRemoval::Denied, "could not remove, access denied: ", "access denied"},
    {TRemoval::Failed, "could not remove, the system failed: ", "the system failed"},
    {TRemoval::NotRecorded, "left alone, it could not be recorded or was changed meanwhile: ",
     "not recorded or changed meanwhile"},
    {TRemoval::NotRemakable, "left alone, a restore could not make it again exactly as it is: ",
     "could not be made again exactly"},
    {TRemoval::Ignored, "left alone, it is on the ignore list by now: ", "ignored by now"},
    {TRemoval::ListUnread,
     "left alone, the ignore list could not be read any more: ", "ignore list not read"},
    {TRemoval::FromOtherKey, "its key could not be opened, so a value of another key went: ",
     "a value of another key went"},
};

std::string Numbers(const TFixReport &Report) {
  std::string Out = std::to_string(Report.Removed) +
                    (Report.Removed == 1 ? " problem fixed\n" : " problems fixed\n");
  for (const TReason &Reason : Reasons)
    if (const auto Count = std::ranges::count(Report.NotRemoved, Reason.Why, &TNotRemoved::Why))
      Out += std::to_string(Count) + " not removed: " + Reason.Counted + "\n";
  return Out;
}

} // namespace

std::string NameOfProblem(std::u16string_view KeyPath, std::u16string_view ValueName,
                          std::u16string_view Data) {
  if (!KeyPath.starts_with(u"HKEY_"))
    return ToUtf8(Data);
  const std::string Value = Trim(ValueName) == WholeKey ? ""
                            : ValueName.empty()         ? "the default value of "
                                                        : "\"" + ToUtf8(ValueName) + "\" of ";
  return Value + ToUtf8(KeyPath) + " (" + ToUtf8(Data) + ")";
}

bool TellFix(TCliConsole &Console, const TFixReport &Report) {
  bool AllWell = Report.LastFixWritten && !Report.BackupFailure;
  for (const TNotRemoved &Left : Report.NotRemoved) {
    const TReason &Reason = *std::ranges::find(Reasons, Left.Why, &TReason::Why);
    Complain(Console, Reason.Sentence + NameOfProblem(Left.KeyPath, Left.ValueName, Left.Data) +
                          (Left.OtherKey.empty() ? "" : ", from " + ToUtf8(Left.OtherKey)));
    AllWell &= Left.Why == TRemoval::GoneAlready;
  }
  if (Report.BackupFailure)
    Complain(Console,
             "the backup has no text, only its exact record: " + WordsOf(Report.BackupFailure));
  if (!Report.LastFixWritten)
    Complain(Console, "the time of the fix could not be written into the settings");
  WriteOutput(Console, Numbers(Report));
  return AllWell;
}

std::string UndoLine(const TOptions &Options, std::u16string_view BackupName) {
  std::string Out = "To undo it: hivesweep-cli restore " + ToUtf8(BackupName);
  if (Options.DataFolder) {
    Out += " --data-folder \"" + *Options.DataFolder;
    Out += Out.ends_with('\\') ? "\\\"" : "\""; // one backslash would take the quote's meaning
  }
  return Out + "\n";
}

} // namespace hivesweep
