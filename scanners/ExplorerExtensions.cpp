#include "platform/Text.h"
#include "scanners/FileTypeScanners.h"
#include "scanners/KeyRules.h"
#include "scanners/ScannerRun.h"

namespace hivesweep {

namespace {

// A program by its bare name, which nothing tells any more how to start.
bool IsUnknownProgram(TScannerRun &Run, std::u16string_view Program) {
  if (Trim(Program).empty() || Program.find_first_of(u"\\/:%\"") != std::u16string_view::npos)
    return false;
  const std::u16string AppPath =
      Below(u"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths", Program);
  return Run.NoSuchKey(TRegRoot::ClassesRoot, Below(u"Applications", Program)) &&
         Run.NoSuchKey(TRegRoot::LocalMachine, AppPath) &&
         Run.NoSuchKey(TRegRoot::CurrentUser, AppPath); // newer systems have it for users, too
}

bool IsLetter(std::u16string_view Name) {
  const char16_t Letter = Name.size() == 1 ? AsciiLower(Name[0]) : u'\0';
  return Letter >= u'a' && Letter <= u'z';
}

// Reports the key's values that Applies takes and Judge calls gone.
template <typename TApplies, typename TJudge>
void CheckValues(TScannerRun &Run, const TKeyAt &Key, TApplies Applies, TJudge Judge) {
  TRegValueList Values;
  Run.Values(Key, Values);
  for (std::size_t Index = 0; Index < Values.Count(); ++Index) {
    const auto &[Name, Data] = Values[Index];
    if (Data.IsText() && Applies(Name) && Judge(Run, Data.Text()))
      Run.ReportValue(TProblemType::InvalidExtensions, Key.Path, Name, Data.Text(), Data.Text());
  }
}

void CheckExtension(TScannerRun &Run, const TKeyAt &Extension) {
  if (ReportIfEmpty(Run, Extension, TProblemType::UnusedExtensions))
    return;
  CheckValues(
      Run, Extension, [](std::u16string_view Name) { return EqualNoCase(Name, u"Application"); },
      IsUnknownProgram);
  CheckValues(
      Run, Extension, [](std::u16string_view Name) { return EqualNoCase(Name, u"Progid"); },
      [](TScannerRun &Where, std::u16string_view Type) {
        return IsNoClass(Where, Type, ClassRoot);
      });
  if (const TKeyAt Programs = Run.Open(Extension, u"OpenWithList"))
    CheckValues(Run, Programs, IsLetter, IsUnknownProgram);
}

} // namespace

std::int32_t ScanExplorerExtensions(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                    TProgressBar &ProgressBar, TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 14);
  Run.Begin(TProblemType::UnusedExtensions);
  constexpr std::u16string_view Path =
      u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts";
  if (const TKeyAt Extensions = Run.Open(TRegRoot::CurrentUser, Path))
    Run.ForEachKey(Extensions, Run.SubkeyNames(Extensions),
                   [&](const TKeyAt &Extension) { CheckExtension(Run, Extension); });
  return Run.Found;
}

} // namespace hivesweep
