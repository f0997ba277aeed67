#include "cli/ScanRun.h"

#include <memory>
#include <utility>

#include "cli/Failure.h"
#include "cli/Output.h"
#include "cli/Progress.h"
#include "platform/Text.h"
#include "repair/Settings.h"

namespace hivesweep {

namespace {

TSession OpenInterruptible(TCliHost &Host, const TOptions &Options) {
  // Before anything is read, so that the exit code is the same whenever it happens.
  Host.Console.CatchInterrupt();
  TSession Session = OpenSession(Host, Options, true);
  Session.Platform.Messages = std::make_unique<TInterruptMessages>(Host.Console);
  return Session;
}

} // namespace

TScanRun::TScanRun(TCliHost &Host, const TOptions &Options)
    : Session(OpenInterruptible(Host, Options)),
      Messages(static_cast<TInterruptMessages &>(*Session.Platform.Messages)), Problems(Messages),
      Engine(Session.Platform, Problems, Session.Settings(), Host.Scanners,
             {EnglishLabels.begin(), EnglishLabels.end()}),
      Console_(Host.Console), Options_(Options) {}

std::u16string TScanRun::AreaFlags() const {
  if (Options_.AreaFlags)
    return *Options_.AreaFlags;
  std::u16string Flags;
  for (const bool IsOn : ReadAreaSwitches(*Session.Platform.Profiles, Session.Paths.MainIniPath))
    Flags.push_back(IsOn ? u'1' : u'0');
  return Flags;
}

bool TScanRun::ShowsProgress() const {
  return !Options_.NoProgress && Console_.IsTerminal(TConsoleStream::Error);
}

void TScanRun::Scan(std::u16string_view AreaFlags) {
  Messages.OnInterrupt = [this] { Engine.Stop(); };
  const auto Caption = [this]() -> std::u16string_view {
    const int Area = Engine.CurrentArea();
    return Area == 0 ? u"" : AreaByNumber(Area).Caption;
  };
  TProgressLine Progress(Console_, Caption, ShowsProgress());
  Engine.StartScan(0, AreaFlags, Progress, u"", Progress);
  Problems.BuildView(u"");
  Engine.GradeProblems({}, Progress);
  Progress.Wipe();
  WasInterrupted = Console_.WasInterrupted();
  AnyFailed = TellFailures();
}

bool TScanRun::TellFailures() const {
  for (const TUnreadableKey &Key : Engine.UnreadableKeys())
    Complain(Console_, "could not read " + ToUtf8(Key.KeyPath) + ": " +
                           (Key.Status == TRegStatus::Denied ? "access denied"
                                                             : "the registry gave no answer"));
  for (const TError &Failure : Engine.UnreadSettings())
    Complain(Console_, WordsOf(Failure) + "; nothing is selected, because what it protects may be "
                                          "among the problems");
  bool Any = !Engine.UnreadSettings().empty();
  for (const TArea &Area : Areas) {
    const TAreaResult &Result = Engine.AreaResults()[AreaIndex(Area.Number)];
    if (Result.Failure.empty())
      continue;
    Any = true;
    Complain(Console_, "the area " + ToUtf8(Area.Switch) + " (" + ToUtf8(Area.Caption) +
                           ") was broken off: " + ToUtf8(Result.Failure));
  }
  return Any;
}

} // namespace hivesweep
