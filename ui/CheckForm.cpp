#include "ui/CheckForm.h"

#include <algorithm>

#include "controls/Button.h"
#include "controls/ImageList.h"
#include "controls/ImageProgress.h"
#include "controls/ListView.h"
#include "controls/Timer.h"
#include "platform/Text.h"
#include "platform/win32/Win32.h"
#include "ui/FormImages.h"
#include "ui/FormTexts.h"
#include "ui/ReportForm.h"
#include "ui/Views.h"
#include "ui/Wording.h"

namespace hivesweep {

namespace {

constexpr int StatusColumn = 1;

// What lies where, by what the dialog is opened for: a fix has no areas to show.
struct TPlaces {
  TSize Size{};
  int Description = 0; // its height; the other numbers are top edges
  int Status = 0;
  int Buttons = 0;
  TAnchors Strip{}; // of the labels and the bar that show how far a run is
};
constexpr TPlaces ScanPlaces{{404, 360}, 18, 270, 318, Edges::Bottom};
constexpr TPlaces FixPlaces{{404, 164}, 32, 64, 122, Edges::Across};

TFormTable CheckTable(TDialogMode Mode) {
  const bool IsScan = Mode == TDialogMode::Scan;
  const TPlaces &At = IsScan ? ScanPlaces : FixPlaces;
  const auto StripLabel = [&](const char16_t *Name) -> TComponentRow {
    return {.Name = Name,
            .Place = {16, At.Status, 372, 18},
            .Anchors = At.Strip,
            .Visible = false,
            // A scan shows the names of areas; what a fix has to say is worth another line.
            .Wrapped = !IsScan,
            .Ellipsis = true};
  };
  return {
      .Name = u"frm_check",
      .Caption = u"Scan and Fix",
      .Size = At.Size,
      .Start = IsScan ? std::optional<TSize>({404, 526}) : std::nullopt,
      .Resizable = IsScan,
      .On = {{TEvent::Show, u"FormShow"}, {TEvent::Close, u"FormClose"}},
      .Rows =
          {
              {.Name = u"ImageList_1", .Kind = TKind::ImageList, .Place = {2, 2, 16, 16}},
              {.Name = u"PopupMenu1", .Kind = TKind::PopupMenu},
              {.Name = u"SelectAll1",
               .Kind = TKind::MenuItem,
               .Caption = u"Select All",
               .Parent = u"PopupMenu1",
               .On = {{TEvent::Click, u"SelectAll1Click"}}},
              {.Name = u"SelectAll2",
               .Kind = TKind::MenuItem,
               .Caption = u"Deselect All",
               .Parent = u"PopupMenu1",
               .On = {{TEvent::Click, u"SelectAll2Click"}}},
              {.Name = u"Label_Discraption",
               .Place = {16, 16, 372, At.Description},
               .Anchors = Edges::Across,
               .Wrapped = true},
              {.Name = u"Lv_check",
               .Kind = TKind::ListView,
               .Place = {16, 42, 372, 220},
               .On = {{TEvent::MouseDown, u"Lv_checkMouseDown"}},
               .Anchors = Edges::All,
               .Visible = IsScan,
               .Checks = true,
               .Columns = {{u"Areas", 200}, {u"Status", 145}},
               .Popup = u"PopupMenu1"},
              StripLabel(u"Lab_status"),
              StripLabel(u"Lab_working"),
              {.Name = u"ImageProgress_1",
               .Kind = TKind::ImageProgress,
               .Place = {16, At.Status + 22, 372, 14},
               .Anchors = At.Strip,
               .Visible = false},
              {.Name = u"bt_scan",
               .Kind = TKind::Button,
               .Place = {220, At.Buttons, 80, 26},
               .On = {{TEvent::Click, u"bt_scanClick"}},
               .Anchors = Edges::BottomRight,
               .Default = true},
              {.Name = u"Bt_close",
               .Kind = TKind::Button,
               .Place = {308, At.Buttons, 80, 26},
               .Caption = u"Close",
               .On = {{TEvent::Click, u"Bt_closeClick"}},
               .Anchors = Edges::BottomRight,
               .Cancel = true},
              {.Name = u"Timer1",
               .Kind = TKind::Timer,
               .On = {{TEvent::Timer, u"Timer1Timer"}},
               .Enabled = false,
               .Interval = 200},
          },
  };
}

bool AnyBrokenOff(const TScanRegistry &Engine) {
  return std::ranges::any_of(Engine.AreaResults(),
                             [](const TAreaResult &Area) { return !Area.Failure.empty(); });
}

} // namespace

Tfrm_check::Tfrm_check(TForm &Above, TWorkbench &Bench, TMainView &Main)
    : TForm(Above.FormLook(), &Above, CheckTable(Bench.DialogMode), Handlers()), Bench_(Bench),
      Main_(Main), List_(Find<TListView>(u"Lv_check")),
      Description_(Find<TControl>(u"Label_Discraption")), Status_(Find<TControl>(u"Lab_status")),
      Working_(Find<TControl>(u"Lab_working")), Progress_(Find<TImageProgress>(u"ImageProgress_1")),
      ScanButton_(Find<TButton>(u"bt_scan")), Timer_(Find<TTimer>(u"Timer1")) {
  FormCreate(); // not as the form's event, which comes before the members are there
}

std::vector<TNamedHandler> Tfrm_check::Handlers() {
  return {Handler(u"FormShow", this, &Tfrm_check::FormShow),
          Handler(u"FormClose", this, &Tfrm_check::FormClose),
          Handler(u"bt_scanClick", this, &Tfrm_check::bt_scanClick),
          Handler(u"Bt_closeClick", this, &Tfrm_check::Bt_closeClick),
          Handler(u"Lv_checkMouseDown", this, &Tfrm_check::Lv_checkMouseDown),
          Handler(u"SelectAll1Click", this, &Tfrm_check::SelectAll1Click),
          Handler(u"SelectAll2Click", this, &Tfrm_check::SelectAll2Click),
          Handler(u"Timer1Timer", this, &Tfrm_check::Timer1Timer)};
}

// ---- life --------------------------------------------------------------------------------

void Tfrm_check::FormCreate() {
  Clean_ = std::make_unique<TRegistryClean>(Bench_.Platform);
  auto &Images = Find<TImageList>(u"ImageList_1");
  FillImages(Images);
  List_.SetImages(&Images);
  for (const TArea &Area : Areas)
    List_.AddRow({{std::u16string(Area.Caption), u""}, Area.Number, {}, false});
  TAreaRows Rows(List_);
  Clean_->LoadAreaSwitches(Rows);
  Timer_.SetEnabled(false);
  List_.FitLastColumn();
  List_.DisableHorizontalArrows();
}

void Tfrm_check::FormShow(TComponent &) {
  Bench_.Busy = false;
  Translate(Bench_.Language, *this);
  const TLayoutPause Pause(*this);
  ShowMode();
  Progress_.SetVisible(false);
  Status_.SetVisible(false);
  Working_.SetVisible(false);
  UpdateScanButton();
  GiveFocus(ScanButton_);
}

void Tfrm_check::ShowMode() {
  List_.SetVisible(IsScan());
  if (!IsScan()) {
    ScanButton_.SetText(Bench_.Text(LanguageText(u"CaptionFixnow")));
    Description_.SetText(ToDecimal(static_cast<std::uint64_t>(Bench_.SelectedCount)) + u" " +
                         Bench_.Text(LanguageText(u"DiscraptionFix")));
    return;
  }
  Description_.SetText(Bench_.Text(LanguageText(u"DiscraptionScan")));
  ScanButton_.SetText(Bench_.Text(LanguageText(u"CaptionScan")));
  for (const TArea &Area : Areas)
    List_.SetCell(static_cast<int>(AreaIndex(Area.Number)), 0,
                  Bench_.Language.TextOr(AreaCaptionKey(Area), Area.Caption));
}

// One that is closed in the middle of a run, without the loop of a modal form around it,
// still needs what the run works with.
void Tfrm_check::FormClose(TComponent &) {
  if (!Bench_.Busy)
    Clean_.reset();
}

void Tfrm_check::Bt_closeClick(TComponent &) {
  if (Bench_.Busy)
    StopRun();
  Close(); // when the run has ended
}

// ---- the areas -----------------------------------------------------------------------------

std::u16string Tfrm_check::CheckedAreas() const {
  std::u16string Flags;
  for (int Row = 0; Row < List_.RowCount(); ++Row)
    Flags.push_back(List_.Checked(Row) ? u'1' : u'0');
  return Flags;
}

void Tfrm_check::Lv_checkMouseDown(TComponent &) { SaveSwitches(); }
void Tfrm_check::SelectAll1Click(TComponent &) { CheckAll(true); }
void Tfrm_check::SelectAll2Click(TComponent &) { CheckAll(false); }

void Tfrm_check::CheckAll(bool Checked) {
  for (int Row = 0; Row < List_.RowCount(); ++Row)
    List_.SetChecked(Row, Checked);
  SaveSwitches();
}

void Tfrm_check::SaveSwitches() {
  Clean_->SaveAreaSwitches(TAreaRows(List_));
  UpdateScanButton();
}

// A run can be stopped whatever is checked meanwhile; it goes by what was checked when it
// began. After a fix nothing is left to do, unless it could not begin.
void Tfrm_check::UpdateScanButton() {
  const bool HasWork =
      IsScan() ? CheckedAreas().find(u'1') != std::u16string::npos : Bench_.SelectedCount > 0;
  ScanButton_.SetEnabled(Bench_.Busy || HasWork);
}

void Tfrm_check::Timer1Timer(TComponent &) {}

// ---- runs --------------------------------------------------------------------------------

void Tfrm_check::bt_scanClick(TComponent &) {
  const auto Now = static_cast<std::uint32_t>(GetMessageTime());
  if (!Bench_.Busy) {
    StartedAt_ = Now;
    Run();
    return;
  }
  // The second click of a double click is not meant for what the button has become.
  if (Now - StartedAt_ <= GetDoubleClickTime())
    return;
  StopRun();
  if (!IsScan())
    Close(); // when the run has ended
}

void Tfrm_check::StopRun() {
  StopWanted_ = true;
  Bench_.Engine.Stop();
  Clean_->StopFix();
}

void Tfrm_check::Run() {
  BeginRun();
  try {
    if (IsScan())
      Scan();
    else
      Fix();
  } catch (...) {
    Bench_.SelectedCount = Bench_.Problems.CheckedCount();
    EndRun();
    throw;
  }
  EndRun();
  if (!NotRemoved_.empty())
    TellNotRemoved();
}

void Tfrm_check::BeginRun() {
  StopWanted_ = false;
  NotRemoved_.clear();
  Bench_.Busy = true;
  const TLayoutPause Pause(*this);
  Status_.SetText(u"");
  Status_.SetVisible(IsScan());
  Working_.SetVisible(!IsScan());
  Progress_.Set(0, 100, 0);
  Progress_.SetVisible(true);
  ScanButton_.SetText(Bench_.Text(LanguageText(u"CaptionStop")));
  Main_.BeginRun();
}

void Tfrm_check::EndRun() {
  Main_.EndRun(IsScan());
  Timer_.SetEnabled(false);
  const TLayoutPause Pause(*this);
  Working_.SetVisible(false);
  Status_.SetVisible(true);
  ScanButton_.SetText(
      Bench_.Text(IsScan() ? LanguageText(u"CaptionScan") : LanguageText(u"CaptionFixnow")));
  Bench_.Busy = false;
  UpdateScanButton();
}

// ---- a scan --------------------------------------------------------------------------------

void Tfrm_check::Scan() {
  Main_.ClearCounts();
  AreaFlags_ = CheckedAreas();
  for (int Row = 0; Row < List_.RowCount(); ++Row) { // of the scan before
    List_.SetCell(Row, StatusColumn, u"");
    List_.SetSubImage(Row, StatusColumn, -1);
  }
  MarkNextArea(0);
  Timer_.SetEnabled(true);

  TLabelStatus StatusLabel(Status_);
  TBarProgress ProgressBar(Progress_, StopWanted_);
  Bench_.Engine.StartScan(reinterpret_cast<TWindowHandle>(Handle()), AreaFlags_, StatusLabel,
                          Bench_.Text(LanguageText(u"Scanlvstring")), ProgressBar);
  Bench_.Platform.Messages->PumpAll(); // the last areas' messages
  ScanStopped_ = StopWanted_;
  ShowFound();
}

void Tfrm_check::ShowFound() {
  Bench_.Problems.BuildView(u"");
  const std::int32_t Count = Bench_.Problems.TotalCount();
  TBarProgress ProgressBar(Progress_, StopWanted_);
  Bench_.SelectedCount = Bench_.Engine.GradeProblems(Bench_.RiskTexts(), ProgressBar);
  Main_.SetWelcome(WelcomeText(Count));
  if (ScanStopped_) {
    Status_.SetText(Bench_.Text(LanguageText(u"Scanstopped")));
    return;
  }
  Clean_->RecordStatistics(Count, true);
  Status_.SetText(Bench_.Text(LanguageText(u"Scanfinish")));
  Progress_.Set(0, 1, 1); // where areas were left out, the work was estimated too high
}

// How many problems there are, and why there may be more. "No problems" is said only of a
// scan that has looked everywhere.
std::u16string Tfrm_check::WelcomeText(std::int32_t Count) const {
  std::vector<std::u16string> Sentences;
  if (Count > 0)
    Sentences.push_back(ToDecimal(static_cast<std::uint64_t>(Count)) + u" " +
                        Bench_.Text(LanguageText(u"LabWelcomeFoundError")));
  if (ScanStopped_)
    Sentences.push_back(Bench_.Text(LanguageText(u"LabWelcomeStopped")));
  else if (AnyBrokenOff(Bench_.Engine))
    Sentences.push_back(Bench_.Text(LanguageText(u"LabWelcomeBrokenOff")));
  else if (Count == 0)
    Sentences.push_back(Bench_.Text(LanguageText(u"LabWelcomeFoundNone")));
  if (const auto &Failures = Bench_.Engine.UnreadSettings(); !Failures.empty())
    Sentences.push_back(Bench_.Text(LanguageText(u"LabWelcomeUnprotected")) + u" " +
                        Bench_.Language.Words(Failures.front()) + u".");
  std::u16string Text;
  for (const std::u16string &Sentence : Sentences)
    Text += (Text.empty() ? u"" : u" ") + Sentence;
  return Text;
}

TAnswer Tfrm_check::Receive(const TMessage &Message) {
  switch (Message.Id) {
  case WM_AREA_SCANNED:
    AreaScanned(AreaIndex(static_cast<int>(Message.WParam)),
                static_cast<std::int32_t>(Message.LParam));
    return 0;
  case WM_QUERYENDSESSION:
    // While the system asks the other programs, a fix still gets to its end, where its
    // backup gets its name.
    if (Bench_.Busy && !IsScan())
      StopRun();
    break;
  default:
    break;
  }
  return TForm::Receive(Message);
}

void Tfrm_check::AreaScanned(std::size_t Row, std::int32_t Count) {
  if (Row >= AreaFlags_.size() || AreaFlags_[Row] != u'1')
    return;
  const auto Show = [this, Row](std::u16string_view Text, int Image) {
    List_.SetCell(static_cast<int>(Row), StatusColumn, Text);
    List_.SetSubImage(static_cast<int>(Row), StatusColumn, Image);
  };
  const auto Problems = [this](std::int32_t Number) {
    return WithNumber(Bench_.Text(LanguageText(u"haveProblem")),
                      static_cast<std::uint64_t>(Number));
  };
  // The message of an area that was broken off has no count of what it had listed.
  if (const TAreaResult &Area = Bench_.Engine.AreaResults()[Row]; !Area.Failure.empty())
    Show((Area.Listed > 0 ? Problems(Area.Listed) + u". " : u"") +
             Bench_.Text(LanguageText(u"BrokenOff")) + u" " + Area.Failure,
         static_cast<int>(TIcon::RiskHigh));
  else if (Count > 0)
    Show(Problems(Count), static_cast<int>(TIcon::RiskHigh));
  else if (!StopWanted_)
    Show(Bench_.Text(LanguageText(u"NoProblem")), static_cast<int>(TIcon::RiskLow));
  else
    Show(u"", -1); // nobody has looked there, or not to the end
  if (!StopWanted_)
    MarkNextArea(Row + 1);
}

// The first area from this row on that the scan will come to.
void Tfrm_check::MarkNextArea(std::size_t Row) {
  const std::size_t Next = AreaFlags_.find(u'1', Row);
  if (Next != std::u16string::npos)
    List_.SetCell(static_cast<int>(Next), StatusColumn,
                  u"      " + Bench_.Text(LanguageText(u"Scanlvstring")));
}

// ---- a fix ---------------------------------------------------------------------------------

void Tfrm_check::Fix() {
  Working_.SetText(Bench_.Text(LanguageText(u"BackData")));
  Bench_.Platform.Messages->PumpAll();
  const std::u16string Fixing = Bench_.Text(LanguageText(u"fixing"));
  Working_.SetText(Fixing);
  Bench_.Platform.Messages->PumpAll();
  if (StopWanted_) // while nothing listened to it
    return;

  const std::int32_t Before = Bench_.Problems.TotalCount();
  TLabelStatus StatusLabel(Status_);
  TBarProgress ProgressBar(Progress_, StopWanted_);
  TFixReport Report =
      Clean_->BackupAndFix(Bench_.Problems, Bench_.Engine, StatusLabel, ProgressBar, Fixing);
  NotRemoved_ = std::move(Report.NotRemoved);
  Bench_.SelectedCount = Bench_.Problems.CheckedCount();
  if (Report.Failure)
    ShowRefusal(Report);
  else if (const std::int32_t Fixed = Before - Bench_.Problems.TotalCount(); Fixed > 0)
    ShowFixed(Fixed);
  else
    Status_.SetText(u""); // it was stopped before its first problem
}

void Tfrm_check::ShowRefusal(const TFixReport &Report) {
  Progress_.SetVisible(false);
  Status_.SetText(Bench_.Language.Words(Report.Failure));
}

void Tfrm_check::ShowFixed(std::int32_t Count) {
  Status_.SetText(Bench_.Text(LanguageText(u"Repairfinish")));
  Clean_->RecordStatistics(Count, false);
  Main_.SetWelcome(ToDecimal(static_cast<std::uint64_t>(Count)) + u" " +
                   Bench_.Text(LanguageText(u"LabWelcomefixed")));
}

// In a window of its own, also when the dialog is about to close: these problems have left
// the list of problems, and nothing else names them.
void Tfrm_check::TellNotRemoved() {
  std::vector<TReportRow> Rows;
  for (const TNotRemoved &Problem : NotRemoved_)
    Rows.push_back({Problem.KeyPath, Problem.ValueName, Worded(Bench_.Language, Problem)});
  Tfrm_report Report(*this, Bench_,
                     WithNumber(Bench_.Text(LanguageText(u"NotRemoved")), Rows.size()), Rows);
  Report.ShowModal();
}

} // namespace hivesweep
