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

} // namespace

std::int32_t ScanSounds(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                        TGroupItems &Group) {
  TScannerRun Run(Engine, StatusLabel, ProgressBar, Group, 10, TLabel::Sound);
  constexpr std::u16string_view Path = u"HKEY_CURRENT_USER\\AppEvents\\Schemes\\Apps";
  const auto Programs = Engine.OpenKey(TRegRoot::CurrentUser, u"\\AppEvents\\Schemes\\Apps");
  if (!Programs)
    return 0;
  TRegValue Value;
  for (const std::u16string &Program : Run.SubkeyNames(*Programs, Path)) {
    const std::u16string ProgramPath = Below(Path, Program);
    const auto Events = Run.Open(*Programs, Path, Program);
    if (!Events)
      continue;
    for (const std::u16string &Event : Run.SubkeyNames(*Events, ProgramPath)) {
      if (!Run.GoesOn())
        return Run.Found;
      const std::u16string Current = Below(Event, u".Current");
      const auto Key = Run.Open(*Events, ProgramPath, Current);
      if (!Key || Key->Read(u"", Value) != TRegStatus::Ok || !Value.Data().IsText())
        continue;
      if (const std::u16string Sound = MissingSound(Engine, Value.Data()); !Sound.empty())
        Run.ReportValue(TLabel::Sound, Below(ProgramPath, Current), u"", Sound,
                        Value.Data().Text());
    }
  }
  return Run.Found;
}

} // namespace hivesweep
