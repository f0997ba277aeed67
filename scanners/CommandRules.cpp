#include "scanners/CommandRules.h"

#include <algorithm>

#include "engine/PathRules.h"
#include "platform/Text.h"
#include "scanners/LocalTargets.h"

namespace hivesweep {

namespace {

// An extension of three letters, or of two, where a file's name ends.
bool EndsInExtension(std::u16string_view Path) {
  return UnitAt(Path, DotPosition(Path)) == u'.' ||
         (Path.size() > 2 && UnitAt(Path, Path.size() - 2) == u'.');
}

// The system itself looks for an unquoted program at every blank, the shortest text
// first, and adds ".exe" where it must. Whatever it could find there keeps the text
// alive.
bool StartsSomething(TScanRegistry &Engine, std::u16string_view Text) {
  constexpr int MostPlaces = 32;
  std::size_t At = 0;
  for (int Place = 0; Place < MostPlaces; ++Place) {
    At = Text.find_first_of(u" ,", At + 1);
    if (At == std::u16string_view::npos)
      return false;
    std::u16string Shorter(Text.substr(0, At));
    if (!Engine.Disk().NoSuchFile(Shorter) || !Engine.Disk().NoSuchFile(Shorter += u".exe"))
      return true;
  }
  return true; // too many to tell
}

// On 64-bit systems there are two folders for programs, and which one the variable
// names depends on who asks.
bool IsInOtherProgramFolder(TScanRegistry &Engine, std::u16string_view Path) {
  std::u16string Other(Path);
  ReplaceAllNoAsciiCase(Other, u"\\program files\\", u"\\Program Files (x86)\\");
  return Other != Path && !Engine.Disk().NothingThere(Other);
}

} // namespace

std::u16string ExpandedText(TScanRegistry &Engine, const TRegData &Value) {
  std::u16string Text(Value.Text());
  if (!Contains(Text, u'%'))
    return Text;
  if (Value.Type() == TRegType::ExpandString)
    ExpandEnvironment(Text, *Engine.Platform().System);
  ExpandSystemRoot(Text, Engine.WinDir);
  ReplaceAllNoAsciiCase(Text, u"%windir%", Engine.WinDir);
  ExpandProgramFiles(Text, Engine.WinDir);
  return Text;
}

TCommandText JudgeCommand(TScanRegistry &Engine, const TRegData &Value) {
  TCommandText Out;
  if (!Value.IsText())
    return Out;
  Out.Expanded = ExpandedText(Engine, Value);
  const std::u16string Text = WithoutQuotes(Out.Expanded);
  if (Text.starts_with(u"%1") || !HasDriveForm(Text))
    return Out;
  const std::u16string_view File = ExtractFileFromCommand(Text);
  if (!EndsInExtension(File) || !IsPlainPath(Engine, File))
    return Out;
  Out.Fate = IsGone(Engine, File) && !StartsSomething(Engine, Text) &&
                     !IsInOtherProgramFolder(Engine, File)
                 ? TFate::Dead
                 : TFate::Alive;
  return Out;
}

bool IsPlainPath(TScanRegistry &Engine, std::u16string_view Path) {
  return !Contains(Path, u'%') && !HasImpossibleName(Path) && IsLocalPath(Engine.Disk(), Path);
}

bool IsGone(TScanRegistry &Engine, std::u16string_view Path) {
  return Engine.Disk().NothingThere(Path) &&
         (!Engine.IsWow64 || CheckTarget64(*Engine.Platform().Files, Path).Missing);
}

} // namespace hivesweep
