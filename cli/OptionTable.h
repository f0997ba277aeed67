// What each option of the command line is called and what it means.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "cli/Options.h"

namespace hivesweep {

enum class TValue { None, Text, Name }; // Name: of a file or folder, never empty

struct TOptionRow {
  TOptionGroups Group = 0;
  const char *Name = nullptr;
  TValue Value = TValue::None;
  const char *Placeholder = nullptr;
  const char *Description = nullptr;
  void (*Take)(TOptions &Options, const std::string &Word) = nullptr; // throws TWrongUse
  bool Repeatable = false;
};

std::span<const TOptionRow> OptionTable();

// Two options that don't go together, or one that needs another; Message says so after
// the first one's name.
struct TOptionRule {
  const char *Given;
  const char *Other;
  bool NeedsOther;
  const char *Message;
};

// A rule whose options a command does not all take does not concern it.
std::span<const TOptionRule> OptionRules();

// The switch names of all areas.
std::string AreaNames();

// For messages; a word that nobody would read to its end is shortened.
std::string Quoted(const std::string &Word);
std::string Joined(const std::vector<std::string> &Words);

} // namespace hivesweep
