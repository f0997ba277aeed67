// The rules of the value-path scanners: each looks at one entry and tells whether
// what it names is missing. What can't be looked at is never missing.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "scanners/ValueScan.h"

namespace hivesweep {

// An application path's default value, its variables resolved, names no file. The
// whole text is the file's name, a switch behind the program included.
std::optional<TVerdict> JudgeAppPath(const TScanContext &Context, const TScanEntry &Entry);

// The file that the value's name names in the folder that its data names. On
// anything but a fixed drive it is a problem without a look at it: help is read from
// the disk, and what came from a share or a CD was left behind by a moved program.
std::optional<TVerdict> JudgeHelpFile(const TScanContext &Context, const TScanEntry &Entry);

// The value's name is a folder.
std::optional<TVerdict> JudgeInstallerFolder(const TScanContext &Context, const TScanEntry &Entry);

// The value's name is a program's path, or "@path,-number".
std::optional<TVerdict> JudgeMuiEntry(const TScanContext &Context, const TScanEntry &Entry);

// The value's name is the path of a DLL, its data the count of its users.
std::optional<TVerdict> JudgeSharedDll(const TScanContext &Context, const TScanEntry &Entry);

// A driver's entry without a driver. What is named there is not looked for: most
// entries are bare names that only the loader resolves.
std::optional<TVerdict> JudgeDriver(const TScanContext &Context, const TScanEntry &Entry);

std::optional<TVerdict> JudgeFont(const TScanContext &Context, const TScanEntry &Entry);

// Where a font's file lies: a text without a drive is looked for in the fonts folder.
std::u16string FontPath(std::u16string_view WinDir, std::u16string_view Data);

std::optional<TVerdict> JudgeStartupEntry(const TScanContext &Context, const TScanEntry &Entry);

// What a command gives to rundll32 or rundll to load, lower-cased: the text between
// the program's name and the first comma. Nothing when Command names neither; an
// empty text when no comma tells where the DLL's name ends.
std::optional<std::u16string> RundllTarget(std::u16string_view Command);

// The value's name is a program's path.
std::optional<TVerdict> JudgeFirewallEntry(const TScanContext &Context, const TScanEntry &Entry);

} // namespace hivesweep
