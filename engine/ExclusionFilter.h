// Keeps protected entries out of the problem list.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "engine/IgnoreFile.h"
#include "engine/PhraseMatcher.h"
#include "platform/Profiles.h"

namespace hivesweep {

// What held an entry back: an entry of a built-in list, a pair of the settings
// file or a key of the ignore file; or why a fix could not delete this entry alone.
struct TProtection {
  enum class TSource {
    Unfixable,
    ExactPairs,
    AnyFieldWords,
    DataWords,
    KeyFragments,
    KeyPrefixes,
    IgnoreFile
  };

  TSource Source;
  std::u16string Entry;

  // "AnyFieldWords: norton", "Ignore.ini: HKEY_...",
  // "Unfixable: its name is the mark of a whole key"
  std::u16string RuleText() const;
};

using TStringList = std::vector<std::u16string>;

// Made at the start of a scan, for that scan. The tests in their order, of which the
// first that hits decides: the pairs; each word against key, value name and data;
// the fragments of the data; those of the key; the ignore file. The texts' ASCII
// letters are folded, other letters and all entries are compared as they stand.
class TExclusionFilter {
public:
  // Pairs: the lines of the section "Registry" of the settings file.
  TExclusionFilter(const TIniSection &Pairs, TIgnoreFile &Ignored, bool IsWow64);

  // What protects the entry; nothing when it may be listed.
  std::optional<TProtection> Check(std::u16string_view KeyPath, std::u16string_view ValueName,
                                   std::u16string_view Data) const;

  // "key=name": the text before the first "=" is a key, the one after it a value
  // name, both exact.
  const TStringList ExactPairs;
  const TStringList AnyFieldWords;
  const TStringList DataWords;
  const TStringList KeyFragments;
  const TStringList KeyPrefixes;

private:
  std::unordered_set<std::u16string> PairIndex_;
  TPhraseMatcher Matcher_;
  TIgnoreFile &Ignored_;
};

} // namespace hivesweep
