#include "engine/PathRules.h"

#include <algorithm>

#include "engine/ScanDisk.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// False for most of a registry's texts, at the first look: resolving variables and
// quotes changes a text only from one of three characters on, so without them in
// front there must stand a drive already.
bool MayBecomeLocalPath(std::u16string_view Text) {
  constexpr std::u16string_view Resolved = u"%\\\"";
  if (Text.empty() || Contains(Resolved, Text[0]))
    return !Text.empty();
  const char16_t Letter = AsciiUpper(Text[0]);
  return Letter >= u'C' && Letter <= u'Z' && Text.size() > 1 &&
         (Text[1] == u':' || Contains(Resolved, Text[1]));
}

} // namespace

std::u16string_view ExtractFileFromCommand(std::u16string_view Text) {
  static constexpr std::u16string_view Extensions[] = {u".exe", u".dll", u".ocx", u".ax",
                                                       u".cpl", u".ico", u".wav", u".txt"};
  const std::size_t FirstDot = Text.find(u'.');
  if (FirstDot == std::u16string_view::npos)
    return Text;
  for (const std::u16string_view Extension : Extensions) {
    const std::size_t At = FindNoAsciiCase(Text, Extension, FirstDot);
    if (At == std::u16string_view::npos)
      continue;
    // Four units on for all of them, ".ax" too: what follows that one is often a
    // version digit ("codec.ax2"), and the unit behind it decides.
    constexpr std::size_t Width = 4;
    const char16_t After = UnitAt(Text, At + 1 + Width);
    return After == u',' || After == u' ' ? Text.substr(0, At + Width) : Text;
  }
  return Text;
}

std::u16string_view TextBeforeComma(std::u16string_view Text) {
  const std::size_t Comma = Text.find(u',');
  return Comma == std::u16string_view::npos ? std::u16string_view() : Text.substr(0, Comma);
}

std::int32_t CountQuotes(std::u16string_view Text) {
  return static_cast<std::int32_t>(std::count(Text.begin(), Text.end(), u'"'));
}

std::u16string WithoutQuotes(std::u16string_view Text) {
  std::u16string Out(Text);
  RemoveAll(Out, u"\"");
  return Out;
}

void ExpandSystemRoot(std::u16string &Text, std::u16string_view WinDir) {
  ReplaceAllNoAsciiCase(Text, u"%systemroot%", WinDir);
}

void ExpandProgramFiles(std::u16string &Text, std::u16string_view WinDir) {
  ReplaceAllNoAsciiCase(Text, u"%programfiles%",
                        std::u16string(WinDir.substr(0, 3)) + u"Program Files");
}

void ExpandEnvironment(std::u16string &Text, TSystem &System) {
  std::u16string Out;
  std::size_t Taken = 0;
  for (std::size_t At = Text.find(u'%'); At != std::u16string::npos; At = Text.find(u'%', At)) {
    const std::size_t End = Text.find(u'%', At + 1);
    if (End == std::u16string::npos)
      break;
    const auto Value = System.Environment(Text.substr(At + 1, End - At - 1));
    if (Value) {
      Out.append(Text, Taken, At - Taken).append(*Value);
      Taken = End + 1;
    }
    At = Value ? Taken : End; // what ended no name may begin one
  }
  if (Taken != 0)
    Text = Out.append(Text, Taken, std::u16string::npos);
}

bool HasDriveForm(std::u16string_view Path) {
  return Path.size() > 2 && Path[1] == u':' && Path.find(u':', 2) == std::u16string_view::npos;
}

char16_t UnitAt(std::u16string_view Text, std::size_t Position) {
  return Position >= 1 && Position <= Text.size() ? Text[Position - 1] : u'\0';
}

std::size_t DotPosition(std::u16string_view Path) { return Path.size() > 3 ? Path.size() - 3 : 0; }

bool IsOnFixedDrive(TDrives &Drives, std::u16string_view Path) {
  return Drives.TypeOf(Path.substr(0, 3)) == TDriveType::Fixed;
}

namespace {

// A list, a variable, an address, an argument: none of them is judged.
bool HoldsMoreThanAPath(std::u16string_view Text) {
  return std::any_of(Text.begin(), Text.end(), [](char16_t Unit) {
    return Unit == u';' || Unit == u'%' || Unit == u'/' || Unit == u'-' || Unit == u'|';
  });
}

void ResolveVariables(std::u16string &Path, const TPathVariables &Variables) {
  const std::u16string &WinDir = Variables.WinDir;
  const bool HasVariables = Contains(Path, u'%'); // most have none
  if (HasVariables)
    ReplaceAllNoAsciiCase(Path, u"%windir%", WinDir);
  ReplaceAllNoAsciiCase(Path, u"\\systemroot\\", WinDir + u"\\");
  if (!HasVariables)
    return;
  ExpandSystemRoot(Path, WinDir);
  ReplaceAllNoAsciiCase(Path, u"%systemdrive%", WinDir.substr(0, 2));
  ExpandProgramFiles(Path, WinDir);
  ReplaceAllNoAsciiCase(Path, u"%temp%\\", Variables.TempDir);
}

} // namespace

bool IsPathValid(TScanDisk &Disk, const TPathVariables &Variables, std::u16string_view Text) {
  if (!MayBecomeLocalPath(Text))
    return true;
  std::u16string Path(Text);
  ResolveVariables(Path, Variables);
  RemoveAll(Path, u"\\??\\");
  RemoveAll(Path, u"\"");

  const char16_t Letter = AsciiUpper(UnitAt(Path, 1));
  if (Path.size() < 3 || Letter < u'C' || Letter > u'Z' || HoldsMoreThanAPath(Path) ||
      !HasDriveForm(Path) || Path[2] != u'\\' || !Disk.IsOnFixedDrive(Path))
    return true;

  const std::u16string_view File = ExtractFileFromCommand(Path);
  if (!Disk.NoSuchFile(File))
    return true;
  // An extension where one belongs makes it a file's path; without a dot or a
  // comma anywhere it is a folder's. What lies between may be a command line.
  const bool FileLike = UnitAt(Path, DotPosition(File)) == u'.';
  const bool FolderLike = Path.find_first_of(u",.") == std::u16string::npos;
  return (!FileLike && !FolderLike) || !Disk.NoSuchFolder(Path);
}

std::u16string SpecialFolderPath(TFolders &Folders, TSpecialFolder Folder) {
  return Folders.Special(Folder);
}

bool QueryIsWow64(TSystem &System) { return System.IsWow64(); }

TTargetCheck CheckTarget64(TFileSystem &Files, std::u16string_view Target) {
  const TRealSystemFolder RealSystemFolder(Files);
  if (!NothingThere(Files, Target))
    return {false, std::u16string(Target)};
  if (FindNoAsciiCase(Target, u"(x86)") == std::u16string_view::npos)
    return {true, std::u16string(Target)};
  std::u16string Other(Target);
  ReplaceAllNoAsciiCase(Other, u" (x86)", u"");
  const bool Missing = NothingThere(Files, Other);
  return {Missing, std::move(Other)};
}

} // namespace hivesweep
