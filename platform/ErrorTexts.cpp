#include "platform/ErrorTexts.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr TErrorText Texts[] = {
    {TErrorCode::Unreadable, u"ErrorUnreadable", u"%s: could not be read"},
    {TErrorCode::Unwritable, u"ErrorUnwritable", u"%s could not be written"},
    {TErrorCode::ReadBackDiffers, u"ErrorReadBackDiffers",
     u"what was written did not read back the same"},
    {TErrorCode::NoRegularFile, u"ErrorNoRegularFile", u"it is no regular file"},
    {TErrorCode::FileTooLarge, u"ErrorFileTooLarge", u"it is larger than %d MiB"},
    {TErrorCode::TextCut, u"ErrorTextCut", u"it is cut: it ends in the middle of a character"},
    {TErrorCode::NoAnswer, u"ErrorNoAnswer", u"it gave no answer"},
    {TErrorCode::KeyEmpty, u"ErrorKeyEmpty", u"a key without a name can't be kept in %s"},
    {TErrorCode::KeyLikeSection, u"ErrorKeyLikeSection",
     u"a key that begins with \"[\" can't be kept in %s"},
    {TErrorCode::KeyLikeComment, u"ErrorKeyLikeComment",
     u"a key that begins with \";\" can't be kept in %s"},
    {TErrorCode::KeyWithEquals, u"ErrorKeyWithEquals",
     u"a key with \"=\" in its path can't be kept in %s"},
    {TErrorCode::KeyWithBreak, u"ErrorKeyWithBreak",
     u"a key with a line break or a zero in its path can't be kept in %s"},
    {TErrorCode::KeyWithOuterBlanks, u"ErrorKeyWithOuterBlanks",
     u"a key with blanks at the ends of its path can't be kept in %s"},
    {TErrorCode::ValueWithBreak, u"ErrorValueWithBreak",
     u"a value's name with a line break or a zero in it can't be kept in %s"},
    {TErrorCode::KeyLostInList, u"ErrorKeyLostInList", u"%s can't hold that key"},
    {TErrorCode::ListNotPutBack, u"ErrorListNotPutBack", u"the file could not be put back"},
    {TErrorCode::NoBackupWritten, u"FixFailed",
     u"Nothing was fixed, because no backup could be written"},
    {TErrorCode::IgnoreListUnknown, u"FixWithoutList",
     u"Nothing was fixed, because the ignore list could not be read"},
    {TErrorCode::NothingFixed, u"ErrorNothingFixed", u"Nothing was fixed"},
    {TErrorCode::DataInUse, u"ErrorDataInUse",
     u"another program is fixing, restoring or deleting a backup"},
    {TErrorCode::DataInUseBy, u"ErrorDataInUseBy",
     u"%s (process %d) is fixing, restoring or deleting a backup"},
    {TErrorCode::NoRecord, u"ErrorNoRecord", u"there is no exact record of it"},
    {TErrorCode::RecordUnreadable, u"ErrorRecordUnreadable", u"the undo record %s can't be read"},
    {TErrorCode::RecordUnknown, u"ErrorRecordUnknown", u"%s is no undo record"},
    {TErrorCode::RecordOfNewerVersion, u"ErrorRecordOfNewerVersion",
     u"the undo record %s has version %d, which this program does not know"},
    {TErrorCode::RecordDamaged, u"ErrorRecordDamaged", u"the undo record %s is damaged"},
    {TErrorCode::RecordOfOtherView, u"ErrorRecordOfOtherView",
     u"the undo record %s was made by the %d-bit program, which sees other keys than this one: "
     u"restore with that"},
    {TErrorCode::NoSuchBackup, u"ErrorNoSuchBackup", u"there is no backup of that name"},
    {TErrorCode::NothingRestored, u"ErrorNothingRestored", u"nothing was restored"},
    {TErrorCode::TextOnly, u"ErrorTextOnly", u"only what the backup's text holds is restored"},
    {TErrorCode::PresentNotRecorded, u"ErrorPresentNotRecorded",
     u"what is there now could not be recorded"},
    {TErrorCode::KeyUnreadable, u"ErrorKeyUnreadable", u"%s can't be read"},
    {TErrorCode::TextDoubtful, u"ErrorTextDoubtful",
     u"%s, line %d: the registry editor might change more by it than was recorded"},
    {TErrorCode::TextNotImported, u"ErrorTextNotImported",
     u"the backup's text was not given to the registry editor, the exact record was restored "
     u"without it"},
    {TErrorCode::RestoreInterrupted, u"ErrorRestoreInterrupted",
     u"the restore of %s was interrupted; the next restore finishes it or takes back what it has "
     u"written"},
    {TErrorCode::InterruptedNotPutRight, u"ErrorInterruptedNotPutRight",
     u"the rest of an interrupted restore can't be put right"},
    {TErrorCode::InterruptedLeft, u"ErrorInterruptedLeft",
     u"what was left of an interrupted restore stays as it is"},
    {TErrorCode::InterruptedKept, u"ErrorInterruptedKept",
     u"the restore that was interrupted is of an older version: what it has done stays, and %s "
     u"undoes it"},
    {TErrorCode::InterruptedFinished, u"ErrorInterruptedFinished",
     u"the restore that was interrupted had done all its work; %s undoes it"},
    {TErrorCode::InterruptedTakenBack, u"ErrorInterruptedTakenBack",
     u"what the interrupted restore had written was taken back; %s undoes that"},
    {TErrorCode::InterruptedPartlyTakenBack, u"ErrorInterruptedPartlyTakenBack",
     u"not all of an interrupted restore could be taken back; the rest is in %s"},
    {TErrorCode::RestoreRecordUnfinished, u"ErrorRestoreRecordUnfinished",
     u"the record of this restore could not be finished"},
    {TErrorCode::EditorNotStarted, u"ErrorEditorNotStarted",
     u"the registry editor could not be started"},
};

// A parameter may itself hold "%d": what is put in is not looked at again.
std::u16string WithParameters(std::u16string_view Text, const TError &Error) {
  std::u16string Out;
  for (std::size_t At = 0; At < Text.size(); ++At) {
    const std::u16string_view Mark = Text.substr(At, 2);
    if (Mark == u"%s" || Mark == u"%d") {
      Out += Mark == u"%s" ? Error.Subject : ToDecimal(Error.Number);
      ++At;
    } else {
      Out.push_back(Text[At]);
    }
  }
  return Out;
}

} // namespace

std::span<const TErrorText> ErrorTexts() { return Texts; }

std::u16string ErrorWords(const TError &Error,
                          const std::function<std::u16string(const TErrorText &Text)> &TextOf,
                          const std::function<std::u16string(std::uint32_t Number)> &SystemTextOf) {
  std::u16string Out;
  if (Error.Code == TErrorCode::System)
    Out = SystemTextOf(Error.Number);
  else if (Error.Code == TErrorCode::Subject)
    Out = Error.Subject;
  else if (const auto *const Text = std::ranges::find(Texts, Error.Code, &TErrorText::Code);
           Text != std::end(Texts))
    Out = WithParameters(TextOf(*Text), Error);
  for (const TError &Cause : Error.Cause)
    Out.append(u": ").append(ErrorWords(Cause, TextOf, SystemTextOf));
  return Out;
}

std::u16string EnglishWords(const TError &Error) {
  return ErrorWords(
      Error, [](const TErrorText &Text) { return std::u16string(Text.English); }, SystemErrorText);
}

} // namespace hivesweep
