// What every scanner with a walk of its own carries along: the engine, the group that
// it fills, what it asks of the keys that it opens, and the count of what it found.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ScanRegistry.h"

namespace hivesweep {

// "parent\name".
std::u16string Below(std::u16string_view Parent, std::u16string_view Name);

// An open key and its full path, which has no backslash at its end.
struct TKeyAt {
  std::unique_ptr<TRegKey> Key; // null: it can't be opened
  std::u16string Path;

  explicit operator bool() const { return Key != nullptr; }
};

using TKeyNames = std::vector<std::u16string>;

class TScannerRun {
public:
  TScannerRun(TScanRegistry &Owner, TStatusLabel &StatusLabel, TProgressBar &Bar,
              TGroupItems &Group, int Area);

  // Moves the bar by one and shows the label.
  void Begin(TProblemType Status);
  void ShowStatus(TProblemType Status);

  // To be asked before each entry: pumps messages; false when the scan has been stopped.
  bool GoesOn();

  // ---- keys: what fails on one that is there is noted as unreadable -----------------
  TKeyAt Open(TRegRoot Root, std::u16string_view Path); // empty: the root itself
  TKeyAt Open(const TKeyAt &Parent, std::u16string_view Name);

  // The names that could be read.
  TKeyNames SubkeyNames(const TKeyAt &At);

  // Whole or nothing: what could not be read to its end tells nothing about a key.
  std::optional<TKeyNames> AllSubkeyNames(const TKeyAt &At);
  std::optional<TRegCounts> Counts(const TKeyAt &At);
  bool Values(const TKeyAt &At, TRegValueList &Out);

  // The default value's text, until the next call; nothing where it is missing or of
  // another type than the two of strings.
  std::optional<std::u16string_view> DefaultText(const TKeyAt &At);

  // The registry certainly has no such key.
  bool NoSuchKey(TRegRoot Root, std::u16string_view Path);

  // Gives Look each name, until the scan is stopped.
  template <typename TLook> void ForEachName(const TKeyNames &Names, TLook Look) {
    for (const std::u16string &Name : Names) {
      if (!GoesOn())
        return;
      if (MovesPerName)
        ProgressBar.Advance();
      Look(Name);
    }
  }

  // Gives Look each of the named keys below Parent that can be opened, in the same way.
  template <typename TLook>
  void ForEachKey(const TKeyAt &Parent, const TKeyNames &Names, TLook Look) {
    ForEachName(Names, [&](const std::u16string &Name) {
      if (const TKeyAt Key = Open(Parent, Name))
        Look(Key);
    });
  }

  // ---- reports ----------------------------------------------------------------------
  // A whole key. Its lines are the key and, where Default is given, that text as its
  // default value.
  void ReportKey(TProblemType Label, std::u16string_view KeyPath, std::u16string_view Data,
                 std::int32_t ItemKind, std::optional<std::u16string_view> Default = {});

  // A value, by its name and stored text; Data is what the record says of it.
  void ReportValue(TProblemType Label, std::u16string_view KeyPath, std::u16string_view Name,
                   std::u16string_view Data, std::u16string_view Stored);

  // What has everything but its area, with lines of the caller's own.
  void Report(TFinding Finding);

  TScanRegistry &Engine;
  TProgressBar &ProgressBar;
  std::int32_t Found = 0;    // those that are held back included
  bool MovesPerName = false; // the bar, in ForEachName

private:
  // Notes a failure; true when there was none.
  bool IsOk(TRegStatus Status, std::u16string_view KeyPath);

  TStatusLabel &StatusLabel_;
  TGroupItems &Group_;
  const int Area_;
  TRegValue Default_;
};

} // namespace hivesweep
