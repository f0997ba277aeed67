// Turns registry text into a path and judges it. Every rule is a plain function;
// what needs a system asks the seam. None of them fails on malformed text: what is
// not recognised falls through to the answer that reports nothing.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/Drives.h"
#include "platform/FileSystem.h"
#include "platform/Folders.h"
#include "platform/System.h"

namespace hivesweep {

class TScanDisk;

// Cuts a command line or icon reference after its file extension. Looks for
// ".exe", ".dll", ".ocx", ".ax", ".cpl", ".ico", ".wav", ".txt", in this order and
// without regard to case; the first that occurs decides alone. When a comma or a
// blank stands four units on, the text up to there is the answer, else the whole
// text. Quotes stay.
std::u16string_view ExtractFileFromCommand(std::u16string_view Text);

// The text before the first comma; nothing when there is none.
std::u16string_view TextBeforeComma(std::u16string_view Text);

std::int32_t CountQuotes(std::u16string_view Text);
std::u16string WithoutQuotes(std::u16string_view Text);

// "%SystemRoot%", in any case, becomes the Windows folder.
void ExpandSystemRoot(std::u16string &Text, std::u16string_view WinDir);

// "%ProgramFiles%" becomes "Program Files" on the drive of the Windows folder.
void ExpandProgramFiles(std::u16string &Text, std::u16string_view WinDir);

// "%name%" becomes what the user's environment has under that name; where it has
// nothing, the text stays.
void ExpandEnvironment(std::u16string &Text, TSystem &System);

// "C:\dir\file" and nothing else: a drive letter's colon, and no second colon that
// would make it a list or a URL.
bool HasDriveForm(std::u16string_view Path);

// The unit at Position, counted from 1; 0 where the text has none.
char16_t UnitAt(std::u16string_view Text, std::size_t Position);

// Where in a path of this length the dot of a three-letter extension stands,
// counted from 1; 0 in a path too short to have one.
std::size_t DotPosition(std::u16string_view Path);

// The first three units of the path are the root of a fixed drive.
bool IsOnFixedDrive(TDrives &Drives, std::u16string_view Path);

// What the variables of IsPathValid stand for.
struct TPathVariables {
  std::u16string WinDir;  // without a trailing backslash
  std::u16string TempDir; // with one
};

// False only when the text, its variables and quotes resolved, is recognisably a
// path on a fixed drive that certainly does not exist. Anything else is taken for
// valid: other drives than C to Z, relative paths, lists, unresolved variables, and
// any path with a hyphen, which may as well begin an argument.
bool IsPathValid(TScanDisk &Disk, const TPathVariables &Variables, std::u16string_view Text);

// What the system says of a special folder: not created, at most 260 units.
std::u16string SpecialFolderPath(TFolders &Folders, TSpecialFolder Folder);

// Whether this 32-bit process runs on a 64-bit system; false when it can't be told.
bool QueryIsWow64(TSystem &System);

struct TTargetCheck {
  bool Missing = false;
  std::u16string Path; // the one to report
};

// For a target on a fixed drive of a 64-bit system: it is missing only when it is
// not there with the system folder's real content in view, and, where its path
// says "(x86)", not in the other program folder either.
TTargetCheck CheckTarget64(TFileSystem &Files, std::u16string_view Target);

} // namespace hivesweep
