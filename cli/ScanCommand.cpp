#include <memory>
#include <utility>

#include "cli/Commands.h"
#include "cli/Output.h"
#include "cli/Progress.h"
#include "cli/ScanReport.h"
#include "cli/Session.h"
#include "engine/RiskGrading.h"
#include "platform/Text.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

namespace {

// There are no windows whose messages could wait. The one thing that can happen
// during a scan is Ctrl+C.
class TInterruptMessages final : public TMessages {
public:
  explicit TInterruptMessages(TCliConsole &Console) : Console_(Console) {}

  void StopOnInterrupt(TScanRegistry &Engine) { Engine_ = &Engine; }

  void Pump() override {
    if (Engine_ && Console_.WasInterrupted())
      Engine_->Stop();
  }
  void Post(TWindowHandle, std::uint32_t, std::uintptr_t, std::intptr_t) override {}

private:
  TCliConsole &Console_;
  TScanRegistry *Engine_ = nullptr;
};

std::u16string FlagsOf(const TOptions &Options, const TSession &Session) {
  if (Options.AreaFlags)
    return *Options.AreaFlags;
  std::u16string Flags;
  for (const bool IsOn : ReadAreaSwitches(*Session.Platform.Profiles, Session.Settings.MainIni))
    Flags.push_back(IsOn ? u'1' : u'0');
  return Flags;
}

std::string Render(const TScanReport &Report, const TOptions &Options, TCliConsole &Console) {
  switch (Options.Format) {
  case TFormat::Json:
    return JsonReport(Report);
  case TFormat::Csv:
    return CsvReport(Report);
  case TFormat::Text:
    break;
  }
  return TextReport(Report, WidthOfResult(Console, Options.OutputFile));
}

// What the scan could not look at: nobody may take it for healthy.
bool TellFailures(TCliConsole &Console, const TScanRegistry &Engine) {
  for (const TUnreadableKey &Key : Engine.UnreadableKeys())
    Complain(Console, "could not read " + ToUtf8(Key.KeyPath) + ": " +
                          (Key.Status == TRegStatus::Denied ? "access denied"
                                                            : "the registry gave no answer"));
  bool AnyFailed = false;
  for (const TArea &Area : Areas) {
    const TAreaResult &Result = Engine.AreaResults()[AreaIndex(Area.Number)];
    if (Result.Failure.empty())
      continue;
    AnyFailed = true;
    Complain(Console, "the area " + ToUtf8(Area.Switch) + " (" + ToUtf8(Area.Caption) +
                          ") was broken off: " + ToUtf8(Result.Failure));
  }
  return AnyFailed;
}

} // namespace

TExitCode RunScan(TCliHost &Host, const TOptions &Options) {
  TCliConsole &Console = Host.Console;
  // Before anything is read, so that the exit code is the same whenever it happens.
  Console.CatchInterrupt();
  TSession Session = OpenSession(Host, Options, true);
  auto OwnedMessages = std::make_unique<TInterruptMessages>(Console);
  TInterruptMessages &Messages = *OwnedMessages;
  Session.Platform.Messages = std::move(OwnedMessages);

  TListViewManage Problems(Messages);
  TScanRegistry Engine(Session.Platform, Problems, Session.Settings, Host.Scanners,
                       {EnglishLabels.begin(), EnglishLabels.end()});
  Messages.StopOnInterrupt(Engine);
  const std::u16string Flags = FlagsOf(Options, Session);

  TScanProgress Progress(Console, Engine,
                         !Options.NoProgress && Console.IsTerminal(TConsoleStream::Error));
  Engine.StartScan(0, Flags, Progress, u"", Progress);
  Progress.Wipe();
  const bool Interrupted = Console.WasInterrupted();

  Problems.BuildView(u"");
  GradeRisks(Problems, {}, [&](std::u16string_view KeyPath) { return Engine.IsIgnored(KeyPath); });
  const bool AnyFailed = TellFailures(Console, Engine);
  if (Interrupted)
    Complain(Console, "stopped; this is what was found so far");
  const TScanReport Report(Problems, Engine, Options.ShowProtected);
  WriteResult(Console, Options.OutputFile, Render(Report, Options, Console));
  return Interrupted ? TExitCode::Interrupted : AnyFailed ? TExitCode::Failed : TExitCode::Done;
}

} // namespace hivesweep
