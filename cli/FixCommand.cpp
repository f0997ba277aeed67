#include <algorithm>
#include <memory>
#include <optional>

#include "cli/Commands.h"
#include "cli/FixPlan.h"
#include "cli/FixReport.h"
#include "cli/Input.h"
#include "cli/Output.h"
#include "cli/Progress.h"
#include "cli/Question.h"
#include "cli/ScanReport.h"
#include "cli/ScanRun.h"
#include "engine/RiskGrading.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

class TFixCommand {
public:
  TFixCommand(TCliHost &Host, const TOptions &Options)
      : Console_(Host.Console), Options_(Options), Plan_(PlanOf(Host, Options)),
        Run_(Host, Options) {}

  TExitCode Run();

private:
  static std::optional<TFixPlan> PlanOf(TCliHost &Host, const TOptions &Options);

  bool Scan();
  void Select();
  TExitCode Fix();
  void Record(std::int32_t Count, bool IsScan);
  TExitCode Done() const { return AllWell_ ? TExitCode::Done : TExitCode::Failed; }

  TCliConsole &Console_;
  const TOptions &Options_;
  const std::optional<TFixPlan> Plan_;
  TScanRun Run_;
  std::unique_ptr<TRegistryClean> Clean_; // null: a dry run
  bool AllWell_ = true;
};

// All that can be found wrong without a scan is found before it.
std::optional<TFixPlan> TFixCommand::PlanOf(TCliHost &Host, const TOptions &Options) {
  if (!Options.DryRun)
    RequireAnswer(Host.Console, Options);
  if (!Options.PlanFile)
    return std::nullopt;
  return TFixPlan(Host.Console, *Options.PlanFile);
}

TExitCode TFixCommand::Run() {
  RequireReadable(Run_.Session, Run_.Session.Paths.MainIniPath);
  RequireReadable(Run_.Session, Run_.Session.Paths.IgnoreIniPath);
  if (!Options_.DryRun)
    Clean_ = OpenData(Console_, Run_.Session, TFolderUse::Writes);
  if (!Scan()) {
    Complain(Console_, "stopped; nothing was changed");
    return TExitCode::Interrupted;
  }
  if (!Run_.Engine.UnreadSettings().empty())
    throw TFailure(TExitCode::Failed, "nothing was changed");
  Select();
  if (Run_.Problems.CheckedCount() == 0)
    return Done();
  if (!Clean_) {
    WriteOutput(Console_, "nothing was changed: this was a dry run\n");
    return Done();
  }
  if (!IsWanted(Console_, Options_, "Fix them?"))
    return Done();
  return Fix();
}

// False when it was interrupted: what is only half known is not fixed.
bool TFixCommand::Scan() {
  Run_.Engine.MakesFolders = !Options_.DryRun;
  Run_.Scan(Plan_ && !Options_.AreaFlags ? Plan_->AreaFlags() : Run_.AreaFlags());
  AllWell_ &= !Run_.AnyFailed;
  if (Run_.WasInterrupted)
    return false;
  Record(Run_.Problems.TotalCount(), true);
  return true;
}

void TFixCommand::Select() {
  const TScanReport Report(Run_.Problems, Run_.Engine, false);
  if (Plan_)
    for (const TPlanEntry &Entry : Plan_->Select(Report.Problems))
      Complain(Console_, "left alone, not found as the plan has it: " +
                             NameOfProblem(Entry.KeyPath, Entry.ValueName, Entry.Data));
  if (Options_.Risks)
    for (const TReportedProblem &Problem : Report.Problems)
      Problem.Item->Checked =
          std::ranges::find(*Options_.Risks, RiskOf(*Problem.Item)) != Options_.Risks->end();
  WriteOutput(Console_, FixText(Report.Problems, WidthOfResult(Console_, std::nullopt)));
}

TExitCode TFixCommand::Fix() {
  Clean_->FixPause = 0;
  Run_.Messages.OnInterrupt = [this] { Clean_->StopFix(); };
  const std::int32_t Before = Run_.Problems.TotalCount();
  TProgressLine Progress(
      Console_, [] { return std::u16string_view(u"Fixing"); }, Run_.ShowsProgress());
  Progress.SetText(u""); // shows itself while everything is recorded
  const TFixReport Report =
      Clean_->BackupAndFix(Run_.Problems, Run_.Engine, Progress, Progress, u"");
  Progress.Wipe();
  if (Report.Failure)
    throw TFailure(TExitCode::Failed, WordsOf(Report.Failure));

  // As the window counts: whatever has left the list is dealt with.
  Record(Before - Run_.Problems.TotalCount(), false);
  AllWell_ &= TellFix(Console_, Report);
  // Also for what was not removed: of a key, a part may be gone.
  if (Report.Removed > 0 || !Report.NotRemoved.empty())
    WriteOutput(Console_, UndoLine(Options_, Report.BackupName));
  if (const std::int32_t Left = Run_.Problems.CheckedCount(); Left > 0) {
    Complain(Console_, "stopped; selected and not fixed: " + std::to_string(Left));
    return TExitCode::Interrupted;
  }
  return Done();
}

void TFixCommand::Record(std::int32_t Count, bool IsScan) {
  if (!Clean_ || Clean_->RecordStatistics(Count, IsScan))
    return;
  AllWell_ = false;
  Complain(Console_,
           "the statistics could not be written into " + ToUtf8(Clean_->Paths.MainIniPath));
}

} // namespace

TExitCode RunFix(TCliHost &Host, const TOptions &Options) {
  return TFixCommand(Host, Options).Run();
}

} // namespace hivesweep
