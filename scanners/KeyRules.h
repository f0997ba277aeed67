// What the content of a key tells of its use. What can't be read is of use.
#pragma once

#include <span>
#include <string_view>

#include "scanners/ScannerRun.h"

namespace hivesweep {

// What a key that says nothing has; everything else is Filled.
enum class TContent { Nothing, BlankDefault, Filled };

// The key has neither subkeys nor values, or one default value without text.
TContent ContentOf(TScannerRun &Run, const TKeyAt &At);

// The key, which has a default value, has nothing else: no other value, no subkey.
bool HoldsOnlyItsDefault(TScannerRun &Run, const TKeyAt &At);

// Reports the key when it holds nothing; a blank default value is in the lines. True
// when it does.
bool ReportIfEmpty(TScannerRun &Run, const TKeyAt &At, TProblemType Label);

// An extension's key whose type of file is gone is of use all the same: it names
// another type that is there, has actions of its own or tells what kind of file it is.
// Types are looked for in the classes of all Homes.
struct TClassesHome {
  TRegRoot Root;
  std::u16string_view Front; // with a backslash at its end, or empty
};
bool IsKeptAlive(TScannerRun &Run, const TKeyAt &Extension, std::span<const TClassesHome> Homes);

// The classes that all programs see.
inline constexpr TClassesHome ClassRoot[] = {{TRegRoot::ClassesRoot, u""}};

// None of Homes has a class of that name, which is not blank.
bool IsNoClass(TScannerRun &Run, std::u16string_view Name, std::span<const TClassesHome> Homes);

} // namespace hivesweep
