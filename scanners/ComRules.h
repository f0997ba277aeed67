// What the texts of COM classes and type libraries name, and whether it is missing.
// What can't be looked at is never missing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "scanners/ValueScan.h"

namespace hivesweep {

// What of a class is looked at: the label of a problem there; nothing for any other
// subkey. Names are compared without regard to ASCII case.
std::optional<TProblemType> ClassPartLabel(std::u16string_view Subkey);

// One of the three classes that are left alone with all that is below them. Unlike all
// other names, these are compared exactly.
bool IsLeftAlone(std::u16string_view Class);

// The text of a class's subkey, "%SystemRoot%" resolved and its quotes off, when the
// file that it names is missing. A ProgID, a bare name, a command whose program has
// no extension of two or three letters name no file.
std::optional<std::u16string> DeadClassTarget(const TScanContext &Context,
                                              std::u16string_view Text);

// The text, as it stands, is the path of a library that is missing.
bool IsDeadLibrary(const TScanContext &Context, std::u16string_view Text);

// The text of a library's last key (a folder of help files, mostly), "%SystemRoot%"
// resolved, when neither a file nor a folder is there.
std::optional<std::u16string> DeadLibraryFolder(const TScanContext &Context,
                                                std::u16string_view Text);

} // namespace hivesweep
