// What a fix or a restore is about to change, exactly as it was before: the record by
// which it can be undone. Its file form is described in docs/undo-record.md.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "repair/EditorText.h"
#include "repair/Snapshot.h"

namespace hivesweep {

enum class TUndoKind : std::uint8_t { Fix = 1, Restore = 2 };

// What an operation does to a key, a value or a file of its record. A stronger mark
// is a greater number.
enum class TUndoMark : std::uint8_t {
  Kept = 0,  // nothing; it stands beside what is touched
  Named = 1, // perhaps, in place of another thing of its name: brought back when it is gone
  Taken = 2, // deletes or replaces it
  Added = 3, // makes it; it was not there before
};

struct TKeyMarks {
  TUndoMark Key = TUndoMark::Kept;
  std::map<std::u16string, TUndoMark, TNameLess> Values; // those that are not Kept
};

struct TUndoMarks {
  std::map<TKeyPlace, TKeyMarks, TKeyPlaceLess> Keys;
  std::map<std::u16string, TUndoMark, TNameLess> Files;

  // The stronger one of the mark that is there and this one stays.
  void MarkKey(const TKeyPlace &Place, TUndoMark Mark);
  void MarkValue(const TKeyPlace &Place, std::u16string_view Name, TUndoMark Mark);

  TUndoMark OfKey(const TKeyPlace &Place) const;
  TUndoMark OfValue(const TKeyPlace &Place, std::u16string_view Name) const;
};

// What a restore is about to do. By this, what it has left behind when it was broken off is
// told from what others have done since.
struct TRestoreGoal {
  std::u16string BackupName; // what is restored
  TSavedKeys Keys;           // what will be there of the record's scope
  std::map<std::u16string, TFileContent, TNameLess> Files;
  // What the registry editor makes on the way, where that is not what will be there.
  std::set<TKeyPlace, TKeyPlaceLess> EditorKeys;
  std::vector<TEditorValue> EditorValues;
};

struct TUndoRecord {
  std::uint64_t Number = 0; // a later record has a greater one; 0: from before there were any
  TUndoKind Kind = TUndoKind::Fix;
  std::uint8_t ViewBits = 0; // 32 or 64: which half of a 64-bit registry the paths are of
  bool Finished = true;      // false: of a restore that has begun and not come to its end
  std::uint32_t Changes = 0; // how many things the user sees as changed
  TSnapshot Before;
  TUndoMarks Marks;
  std::optional<TRestoreGoal> Goal; // of a restore that is not Finished
};

// The bits of the registry that this program sees.
constexpr std::uint8_t ThisView() { return sizeof(void *) * 8; }

// What the record's operation did, undone in Present: what it took is there again as it
// was, what it added is gone, and what somebody else has changed since stays.
TSnapshot Undone(const TUndoRecord &Record, const TSnapshot &Present);

// Whether the record's restore, which was broken off, has reached its goal all the same, and
// Present without what it wrote: only what is still as that restore or its editor wrote it
// is again as it was before. Without a goal nothing of Present is changed.
struct TTakenBack {
  bool HasReachedGoal = false;
  TSnapshot Wanted;
};
TTakenBack TakenBack(const TUndoRecord &Record, const TSnapshot &Present);

// Those marks whose thing is not there Now, or can't be looked at: what was to be deleted and
// is still there was left alone.
TUndoMarks MarksOfGone(const TUndoMarks &Marks, const TSnapshot &Now);

// The marks of whatever made Before into After.
TUndoMarks MarksOfChange(const TSnapshot &Before, const TSnapshot &After);

// What stands first in a record's file.
struct TUndoHead {
  std::uint64_t Number = 0;
  std::uint32_t Changes = 0;
};
constexpr std::size_t UndoHeadSize = 39; // bytes of a file that hold it

// Reads it from the front of a file, or from all of it, and holds nothing against the
// checksum. What is no record has neither number nor changes.
TUndoHead DecodeUndoHead(std::string_view Front);

// The bytes have a record's mark and size, a version that this program knows, and the
// checksum of what follows. Why as in DecodeUndoRecord.
bool IsWholeUndoRecord(std::string_view Bytes, TError &Why);

// The record as a file's bytes.
std::string EncodeUndoRecord(const TUndoRecord &Record);

// Nothing when the bytes are no whole record that this program understands; Why then
// says so, and its subject is left to the caller, who knows the file.
std::optional<TUndoRecord> DecodeUndoRecord(std::string_view Bytes, TError &Why);

} // namespace hivesweep
