// Whether what a text of the registry names is certainly gone: a command line, the
// place of an icon, a plain path. What is not recognised, what lies anywhere but on a
// fixed drive and what can't be looked at is never gone.
#pragma once

#include <string>
#include <string_view>

#include "engine/ScanRegistry.h"

namespace hivesweep {

enum class TFate {
  Untold, // nothing that could be looked for
  Alive,
  Dead,
};

struct TCommandText {
  std::u16string Expanded; // its variables resolved
  TFate Fate = TFate::Untold;
};

// The value's text with its variables resolved: those of the user's environment in an
// expandable value, the folders of Windows and of the programs in any.
std::u16string ExpandedText(TScanRegistry &Engine, const TRegData &Value);

// The program of a command line, or the file of an icon reference.
TCommandText JudgeCommand(TScanRegistry &Engine, const TRegData &Value);

// The path is whole, on a fixed drive, and a name that a disk can have.
bool IsPlainPath(TScanRegistry &Engine, std::u16string_view Path);

// There is nothing of the name of this plain path; where a 32-bit program runs on a
// 64-bit system, in neither of the two views.
bool IsGone(TScanRegistry &Engine, std::u16string_view Path);

} // namespace hivesweep
