// Why something could not be done: a code with its parameters. The words are made where
// somebody reads them: the window makes them in the user's language, the command line in
// English.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

// The codes of all floors, so that a failure can be passed up through each of them.
// ErrorTexts.h has the English of each.
enum class TErrorCode : std::uint8_t {
  None,    // it went well
  System,  // Number is the system's own error
  Subject, // what failed was about the subject; the cause says how

  // Files of the program.
  Unreadable,
  Unwritable,
  ReadBackDiffers,
  NoRegularFile,
  FileTooLarge, // Number is how many MiB it may have
  TextCut,
  NoAnswer, // from standard input

  // The ignore list. The subject is its file.
  KeyEmpty,
  KeyLikeSection,
  KeyLikeComment,
  KeyWithEquals,
  KeyWithBreak,
  KeyWithOuterBlanks,
  ValueWithBreak,
  KeyLostInList,
  ListNotPutBack,

  // A fix that did not begin.
  NoBackupWritten,
  IgnoreListUnknown,
  NothingFixed,

  // Another program is changing what the data folder holds.
  DataInUse,
  DataInUseBy, // the subject is that program, Number its process

  // Exact records. The subject is the record's file.
  NoRecord,
  RecordUnreadable,
  RecordUnknown,
  RecordOfNewerVersion, // Number is the version
  RecordDamaged,
  RecordOfOtherView, // Number is the bits of the program that made it

  // Backups and restores.
  NoSuchBackup,
  NothingRestored,
  TextOnly,
  PresentNotRecorded,
  KeyUnreadable,
  TextDoubtful, // the subject is the text's file, Number its first doubtful line
  TextNotImported,
  RestoreInterrupted, // the subject is the backup that was being restored
  InterruptedNotPutRight,
  InterruptedLeft,
  InterruptedKept,            // the subject is the backup that undoes it
  InterruptedFinished,        // likewise
  InterruptedTakenBack,       // the subject is the backup that undoes that
  InterruptedPartlyTakenBack, // the subject is the backup that holds the rest
  RestoreRecordUnfinished,
  EditorNotStarted,

  Last = EditorNotStarted,
};

struct TError {
  TErrorCode Code = TErrorCode::None;
  std::u16string Subject = {}; // a path or a name; empty: none
  std::uint32_t Number = 0;
  std::vector<TError> Cause = {}; // empty, or the one failure that led to this one

  // It failed.
  explicit operator bool() const { return Code != TErrorCode::None; }
  bool operator==(const TError &) const = default;
};

// What led to a failure becomes its cause. None when nothing failed.
TError Because(TError Cause, TErrorCode Code, std::u16string_view Subject = {});

// A failure that is about Subject, a path; none when nothing failed.
inline TError About(std::u16string_view Subject, TError Cause) {
  return Because(std::move(Cause), TErrorCode::Subject, Subject);
}

// An error number of the system that runs the program: an errno, or what GetLastError
// answers.
inline TError SystemError(std::uint32_t Number) { return {TErrorCode::System, {}, Number}; }

// The system's words for its error number, in the language that it speaks.
std::u16string SystemErrorText(std::uint32_t Number);

} // namespace hivesweep
