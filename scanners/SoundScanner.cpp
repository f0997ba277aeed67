#include <algorithm>

#include "scanners/CommandRules.h"
#include "scanners/ScannerRun.h"
#include "scanners/ShellScanners.h"

namespace hivesweep {

namespace {

// The file that an event plays, as far as it can be told, and only when it is gone.
// A name alone lies in the folder for sounds; the system, though, also finds it where
// it looks for programs, and adds the extension.
std::u16string MissingSound(TScanRegistry &Engine, const TRegData &Value) {
  std::u16string Path = ExpandedText(Engine, Value);
  if (Path.empty())
    return {};
  const auto IsMissing = [&](const std::u16string &Place) {
    return IsPlainPath(Engine, Place) && Engine.Disk().NoSuchFile(Place) && IsGone(Engine, Place);
  };
  if (Path.find_first_of(u"\\/:") != std::u16string::npos)
    return IsMissing(Path) ? Path : std::u16string();
  const std::u16string Name = Path;
  for (const std::u16string_view Folder : {u"\\System32\\", u"\\", u"\\Media\\"}) {
    Path = Engine.WinDir + std::u16string(Folder) + Name;
    if (!IsMissing(Path) || !IsMissing(Path + u".wav"))
      return {};
  }
  return Path;
}

void CheckSound(TScannerRun &Run, const TKeyAt &Current) {
  TRegValue Value;
  if (Current.Key->Read(u"", Value) != TRegStatus::Ok || !Value.Data().IsText())
    return;
  if (const std::u16string Sound = MissingSound(Run.Engine, Value.Data()); !Sound.empty())
    Run.ReportValue(TProblemType::Sound, Current.Path, u"", Sound, Value.Data().Text());
}

} // namespace

std::int32_t ScanSounds(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                        TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 10);
  Run.Begin(TProblemType::Sound);
  const TKeyAt Top = Run.Open(TRegRoot::CurrentUser, u"AppEvents\\Schemes\\Apps");
  if (!Top)
    return 0;
  Run.ForEachKey(Top, Run.SubkeyNames(Top), [&](const TKeyAt &Program) {
    Run.ForEachName(Run.SubkeyNames(Program), [&](const std::u16string &Event) {
      if (const TKeyAt Current = Run.Open(Program, Below(Event, u".Current")))
        CheckSound(Run, Current);
    });
  });
  return Run.Found;
}

} // namespace hivesweep
