#include "ui/RescueForm.h"

#include <algorithm>
#include <utility>

#include "controls/Button.h"
#include "controls/ListView.h"
#include "controls/Timer.h"
#include "ui/FormTexts.h"
#include "ui/ReportForm.h"
#include "ui/Views.h"
#include "ui/Wording.h"

namespace hivesweep {

namespace {

TFormTable RescueTable() {
  return {
      .Name = u"frm_rescue",
      .Caption = u"Restore",
      .Size = {528, 314},
      .Start = TSize{528, 380},
      .Resizable = true,
      .On = {{TEvent::Show, u"FormShow"}, {TEvent::Close, u"FormClose"}},
      .Rows =
          {
              {.Name = u"Label_warning",
               .Place = {16, 16, 496, 46},
               .Caption =
                   u"Be cautious when using this function as it may affect the functionality of "
                   u"your softwares. Use this feature only when you have to restore to a previous "
                   u"working state. Select the items you want to restore from the list below.",
               .Anchors = Edges::Across,
               .Wrapped = true},
              {.Name = u"Lv_back",
               .Kind = TKind::ListView,
               .Place = {16, 70, 496, 166},
               .On = {{TEvent::MouseDown, u"Lv_backMouseDown"}},
               .Anchors = Edges::All,
               .Columns = {{u"Backup Date", 200}, {u"Changes", 150}, {u"Size", 120}}},
              {.Name = u"Label_failure",
               .Place = {16, 244, 496, 18},
               .Anchors = Edges::Bottom,
               .Visible = false,
               .Wrapped = true,
               .Ellipsis = true},
              {.Name = u"Button1",
               .Kind = TKind::Button,
               .Place = {188, 272, 112, 26},
               .Caption = u"Undo Changes",
               .On = {{TEvent::Click, u"Button1Click"}},
               .Anchors = Edges::BottomRight,
               .Default = true},
              {.Name = u"Button2",
               .Kind = TKind::Button,
               .Place = {308, 272, 112, 26},
               .Caption = u"Delete Backups",
               .On = {{TEvent::Click, u"Button2Click"}},
               .Anchors = Edges::BottomRight},
              {.Name = u"Button3",
               .Kind = TKind::Button,
               .Place = {428, 272, 84, 26},
               .Caption = u"Close",
               .On = {{TEvent::Click, u"Button3Click"}},
               .Anchors = Edges::BottomRight,
               .Cancel = true},
              {.Name = u"Timer1",
               .Kind = TKind::Timer,
               .On = {{TEvent::Timer, u"Timer1Timer"}},
               .Enabled = false,
               .Interval = 100},
          },
  };
}

// What did not go as it should have, the gravest thing first; empty when all went well.
std::u16string FailureOf(const TLanguage &Language, const TRestoreReport &Report) {
  std::u16string Text;
  const auto Add = [&Text](const std::u16string &Words) {
    Text += (Text.empty() ? u"" : u"; ") + Words;
  };
  if (Report.Failure)
    Add(Language.Words(Report.Failure));
  if (!Report.NotRestored.empty())
    Add(WithNumber(Language.TextOr(LanguageText(u"NotRestored")), Report.NotRestored.size()));
  for (const TError &Note : Report.Notes)
    Add(Language.Words(Note));
  return Text;
}

// The name that FillRows put into the row: always its last cell.
std::u16string EntryName(const TListCells &Cells) { return Cells.Texts.back(); }

// True while a scope lasts, whichever way it is left.
class TDuring {
public:
  explicit TDuring(bool &Flag) : Flag_(Flag) { Flag_ = true; }
  TDuring(const TDuring &) = delete;
  TDuring &operator=(const TDuring &) = delete;
  ~TDuring() { Flag_ = false; }

private:
  bool &Flag_;
};

} // namespace

Tfrm_rescue::Tfrm_rescue(TForm &Above, TWorkbench &Bench)
    : TForm(Above.FormLook(), &Above, RescueTable(), Handlers()), Bench_(Bench),
      List_(Find<TListView>(u"Lv_back")), Failure_(Find<TControl>(u"Label_failure")),
      Undo_(Find<TButton>(u"Button1")), Delete_(Find<TButton>(u"Button2")),
      Timer_(Find<TTimer>(u"Timer1")) {
  FormCreate(); // not as the form's event, which comes before the members are there
}

std::vector<TNamedHandler> Tfrm_rescue::Handlers() {
  return {Handler(u"FormShow", this, &Tfrm_rescue::FormShow),
          Handler(u"FormClose", this, &Tfrm_rescue::FormClose),
          Handler(u"Lv_backMouseDown", this, &Tfrm_rescue::Lv_backMouseDown),
          Handler(u"Button1Click", this, &Tfrm_rescue::Button1Click),
          Handler(u"Button2Click", this, &Tfrm_rescue::Button2Click),
          Handler(u"Button3Click", this, &Tfrm_rescue::Button3Click),
          Handler(u"Timer1Timer", this, &Tfrm_rescue::Timer1Timer)};
}

// ---- life --------------------------------------------------------------------------------

void Tfrm_rescue::FormCreate() {
  Clean_ = std::make_unique<TRegistryClean>(Bench_.Platform);
  FillList(u"");
  if (List_.RowCount() > 0)
    List_.Select(0);
  UpdateButtons();
  List_.FitLastColumn();
}

void Tfrm_rescue::FormShow(TComponent &) {
  Translate(Bench_.Language, *this);
  if (List_.RowCount() > 0)
    GiveFocus(List_);
  else
    GiveFocus(Find<TButton>(u"Button3"));
}

void Tfrm_rescue::FormClose(TComponent &) {
  Timer_.SetEnabled(false);
  if (!Working_)
    Clean_.reset(); // a restore comes to its end first
}

// Closing waits for a restore, so that what went wrong is seen before the dialog goes.
void Tfrm_rescue::Button3Click(TComponent &) {
  if (Restoring_ && !Working_) {
    {
      const TDuring Call(Working_);
      Clean_->FinishRestore();
    }
    RestoreEnded();
    if (Failure_.Visible())
      return;
  }
  Close();
}

// ---- the list ------------------------------------------------------------------------------

void Tfrm_rescue::FillList(const std::u16string &Selected) {
  TPlainRows Rows(List_);
  Clean_->FillBackups(Rows);
  List_.Select(-1);
  for (int Row = 0; Row < List_.RowCount(); ++Row)
    if (EntryName(List_.Cells(Row)) == Selected)
      List_.Select(Row);
}

std::u16string Tfrm_rescue::SelectedEntry() const {
  const int Row = List_.Selected();
  return Row < 0 ? u"" : EntryName(List_.Cells(Row));
}

// What the commands work with is the third cell behind the date. The name stands there
// for sizes that have exactly one cell; for others it is a size, or nothing, and then
// there is no such backup.
std::u16string Tfrm_rescue::CommandedName(int Row) const {
  constexpr std::size_t Third = 3;
  const TListCells Cells = List_.Cells(Row);
  return Cells.Texts.size() > Third ? Cells.Texts[Third] : u"";
}

bool Tfrm_rescue::IsBackup(std::u16string_view Name) const {
  const auto Backups = Clean_->EnumerateBackups();
  return std::ranges::find(Backups, Name, &TBackupEntry::Name) != Backups.end();
}

void Tfrm_rescue::Lv_backMouseDown(TComponent &) { UpdateButtons(); }

void Tfrm_rescue::UpdateButtons() {
  const bool HasRow = List_.Selected() >= 0 && !IsRestoring();
  Undo_.SetEnabled(HasRow);
  Delete_.SetEnabled(HasRow);
}

void Tfrm_rescue::ShowFailure(const TLanguageText &What, std::u16string_view Why) {
  Failure_.SetText(Why.empty() ? u"" : Bench_.Text(What).append(u" ").append(Why));
  Failure_.SetVisible(!Why.empty());
}

// ---- commands ------------------------------------------------------------------------------

void Tfrm_rescue::Button1Click(TComponent &) {
  const int Row = List_.Selected();
  if (Row < 0 || IsRestoring() ||
      !Tell(*this, Bench_.Language, LanguageText(u"RestoreMessage"), TMessageKind::Question))
    return;
  const std::u16string Name = CommandedName(Row);
  ShowFailure(LanguageText(u"RestoreFailed"), u"");
  {
    const TDuring Call(Working_);
    Restoring_ = Clean_->RestoreBackup(Name);
  }
  if (!Restoring_) {
    if (IsBackup(Name))
      ShowFailure(LanguageText(u"RestoreFailed"),
                  FailureOf(Bench_.Language, Clean_->RestoreReport()));
    return;
  }
  UpdateButtons();
  Timer_.SetEnabled(true);
  Tell(*this, Bench_.Language, LanguageText(u"RestoreSucMessage"), TMessageKind::Information);
}

void Tfrm_rescue::Timer1Timer(TComponent &) {
  if (!Restoring_ || Working_)
    return;
  bool HasEnded = false;
  {
    const TDuring Call(Working_);
    HasEnded = Clean_->ContinueRestore(0);
  }
  if (HasEnded)
    RestoreEnded();
}

void Tfrm_rescue::RestoreEnded() {
  Restoring_ = false;
  Timer_.SetEnabled(false);
  const TRestoreReport &Report = Clean_->RestoreReport();
  ShowFailure(LanguageText(u"RestoreFailed"), FailureOf(Bench_.Language, Report));
  if (!Failure_.Visible() && !Report.Remarks.empty()) {
    Failure_.SetText(Bench_.Language.Words(Report.Remarks.front()) + u".");
    Failure_.SetVisible(true);
  }
  FillList(SelectedEntry()); // what undoes the restore is one of them now
  UpdateButtons();
  TellNotRestored();
}

void Tfrm_rescue::TellNotRestored() {
  const TRestoreReport &Restored = Clean_->RestoreReport();
  if (Restored.NotRestored.empty())
    return;
  std::vector<TReportRow> Rows;
  for (const TPutFailure &Failure : Restored.NotRestored)
    Rows.push_back({Failure.Path, Failure.Value, Worded(Bench_.Language, Failure)});
  Tfrm_report Report(*this, Bench_,
                     WithNumber(Bench_.Text(LanguageText(u"NotRestored")), Rows.size()) + u".",
                     Rows);
  Report.ShowModal();
}

void Tfrm_rescue::Button2Click(TComponent &) {
  const int Row = List_.Selected();
  if (Row < 0 || IsRestoring() ||
      !Tell(*this, Bench_.Language, LanguageText(u"DeleteMessage"), TMessageKind::Question))
    return;
  const std::u16string Name = CommandedName(Row);
  TError Error;
  {
    const TDuring Call(Working_);
    Error = Clean_->DeleteBackup(Name);
  }
  const bool IsLeft = Error && IsBackup(Name);
  ShowFailure(LanguageText(u"DeleteFailed"), IsLeft ? Bench_.Language.Words(Error) : u"");
  if (!Error)
    List_.DeleteRow(Row);
  UpdateButtons();
}

} // namespace hivesweep
