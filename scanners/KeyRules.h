// Whether a key of the classes is of no use any more.
#pragma once

#include <span>
#include <string_view>

#include "scanners/ScannerRun.h"

namespace hivesweep {

// What a key that says nothing has; everything else is Filled.
enum class TContent { Nothing, BlankDefault, Filled };

// The key has neither subkeys nor values, or one default value without text. What
// can't be read is Filled.
TContent ContentOf(TRegKey &Key);

// An extension's key whose type of file is gone is of use all the same: it names
// another type that is there, has actions of its own or tells what kind of file it is.
// Types are looked for in the classes of all Homes; a key that can't be read is of use.
struct TClassesHome {
  TRegRoot Root;
  std::u16string_view Front; // with a backslash at its end, or empty
};
bool IsKeptAlive(TScannerRun &Run, TRegKey &Extension, std::span<const TClassesHome> Homes);

// None of Homes has a class of that name, which is not blank.
bool IsNoClass(TScannerRun &Run, std::u16string_view Name, std::span<const TClassesHome> Homes);

// The default value's text; empty where there is none.
std::u16string DefaultText(TRegKey &Key);

} // namespace hivesweep
