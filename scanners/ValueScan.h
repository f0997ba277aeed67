// The frame of the value-path scanners: a scanner is a row of a table, which names
// its keys, its texts and one rule; one walker runs them all.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "engine/ScanRegistry.h"

namespace hivesweep {

// One registry entry that a rule is asked about.
struct TScanEntry {
  std::u16string_view Name; // a value's name; empty for a subkey's default value
  TRegData Value;
};

// What a rule may need besides the entry.
struct TScanContext {
  TScanDisk &Disk;
  const std::u16string &WinDir;
  // The pass over the user's keys, not the machine's.
  bool UserPass;
};

// A problem, in the scanner's own words.
struct TVerdict {
  std::u16string Data;     // for the record and the filter
  std::u16string LineData; // for the backup's value line, before it is escaped
  // The value itself is empty, so nothing that it names is missing.
  bool EmptyValue = false;
};

// Nothing: the entry is healthy.
using TRule = std::optional<TVerdict> (*)(const TScanContext &Context, const TScanEntry &Entry);

// The entries that a scanner looks at; the others are not even counted.
enum class TEntries {
  Strings,        // values of the string and expandable-string types
  PlainStrings,   // values of the string type alone
  Dwords,         // 32-bit numbers
  AnyType,        // every value
  SubkeyDefaults, // the default value of each subkey, of both string types
  SubkeyStrings,  // the values of each subkey, of both string types
};

// How the backup's value line writes the data.
enum class TLineData {
  AsRead,
  Escaped,
  EscapedIfNameIsPath, // only where the second unit of the value's name is ":"
  DecimalDword,
  // In the form of its type; text is escaped only where its second unit is ":". A
  // value of a type without a form has no lines at all.
  ByType,
};

// One key of a scanner. The path is spelled as the records and the backup have it:
// whether it ends in a backslash differs from scanner to scanner, and the ignore
// lists that users have built up hold these very texts.
struct TScanKey {
  TRegRoot Root;
  std::u16string_view Path;
};

struct TValueScan {
  int Area;
  TProblemType StatusLabel; // shown while the scanner runs
  TProblemType RecordLabel; // the type of its problems
  TEntries Entries = TEntries::Strings;
  TRule Rule;
  bool EscapeName = false; // in the backup's value line
  TLineData LineData = TLineData::Escaped;
  std::span<const TScanKey> Keys; // walked one after the other
};

// Runs one scanner, as TScanner has it.
std::int32_t RunValueScan(const TValueScan &Scan, TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group);

// The scanner that a row makes.
template <const TValueScan &Scan>
std::int32_t RunRow(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                    TGroupItems &Group) {
  return RunValueScan(Scan, Engine, StatusLabel, ProgressBar, Group);
}

} // namespace hivesweep
