// The frame of the scanners whose entries are keys: one walk over the subkeys of one
// key, and what such a scanner asks of the keys that it opens.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "engine/ScanRegistry.h"

namespace hivesweep {

struct TKeyScan {
  int Area;
  TLabel StatusLabel; // shown while the scanner runs
  TRegRoot Root;
  std::u16string_view Path; // as records spell it, with a backslash at its end
};

// With the root's name in front.
std::u16string FullPath(const TKeyScan &Scan);

// An open key and its full path, which has no backslash at its end.
struct TKeyAt {
  std::unique_ptr<TRegKey> Key; // null: it can't be opened
  std::u16string Path;
};

class TKeyWalk {
public:
  // Opens the key, shows the label and lists the subkeys. Of a key that can't be
  // opened there are none.
  TKeyWalk(const TKeyScan &Scan, TScanRegistry &Engine, TStatusLabel &StatusLabel,
           TGroupItems &Group);

  const std::vector<std::u16string> &Names() const { return Names_; }

  // Calls Look with each name, until the scan is stopped. Answers how many problems
  // have been reported.
  std::int32_t Run(const std::function<void(const std::u16string &Name)> &Look);

  // ---- for Look: what fails on a key that is there is noted as unreadable --------
  TKeyAt Open(const std::u16string &Name); // a subkey of the key that is walked
  TKeyAt Open(const TKeyAt &Parent, std::u16string_view Name);

  // Whole or nothing: what could not be read to its end tells nothing about a key.
  std::optional<std::vector<std::u16string>> SubkeyNames(const TKeyAt &At);
  std::optional<TRegCounts> Counts(const TKeyAt &At);
  bool Values(const TKeyAt &At, TRegValueList &Out);

  // The default value's text, until the next call; nothing where it is missing or of
  // another type than the two of strings.
  std::optional<std::u16string_view> DefaultText(const TKeyAt &At);

  // The key, which has a default value, has nothing else: no other value, no subkey.
  bool HoldsOnlyItsDefault(const TKeyAt &At);

  // Reports a whole key. The backup has its default value, too, when there is Data.
  void ReportKey(TLabel Label, const TKeyAt &At, std::u16string_view Data, std::int32_t ItemKind);
  void ReportKey(TLabel Label, std::u16string KeyPath, std::u16string_view Data,
                 std::int32_t ItemKind);

  // Reports what has everything but its area.
  void Report(TFinding Finding);

  // The full path of a subkey of the key that is walked.
  std::u16string PathOf(std::u16string_view Name) const;

private:
  // Notes a failure; true when there was none.
  bool IsOk(TRegStatus Status, std::u16string_view KeyPath);

  const int Area_;
  const std::u16string Path_; // with a backslash at its end
  TScanRegistry &Engine_;
  TGroupItems &Group_;
  std::unique_ptr<TRegKey> Key_;
  std::vector<std::u16string> Names_;
  TRegValue Default_;
  std::int32_t Found_ = 0;
};

} // namespace hivesweep
