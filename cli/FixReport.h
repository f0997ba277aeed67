// What a fix or a restore has to tell.
#pragma once

#include <string>
#include <string_view>

#include "cli/CliConsole.h"
#include "cli/Options.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

// `"name" of HKEY_…\Key (C:\gone.dll)`, for messages. A problem without a key is its data.
std::string NameOfProblem(std::u16string_view KeyPath, std::u16string_view ValueName,
                          std::u16string_view Data);

// The numbers on standard output, what could not be done on standard error. False when
// anything was left that should have gone, or gone without what belongs to it.
bool TellFix(TCliConsole &Console, const TFixReport &Report);

// "To undo it: " and the command that does.
std::string UndoLine(const TOptions &Options, std::u16string_view BackupName);

} // namespace hivesweep
