#include "ui/MainForm.h"

#include <algorithm>

#include "controls/CheckBox.h"
#include "controls/ImageList.h"
#include "controls/MenuItem.h"
#include "controls/MessageBox.h"
#include "platform/win32/Win32.h"
#include "ui/CheckForm.h"
#include "ui/FormImages.h"
#include "ui/FormTexts.h"
#include "ui/IgnoredForm.h"
#include "ui/Infopane.h"
#include "ui/RegistryEditor.h"
#include "ui/RescueForm.h"

namespace hivesweep {

namespace {

// The first column's caption begins where the rows' texts do: behind their boxes.
constexpr std::u16string_view FirstColumnIndent = u"      ";

std::u16string Counted(std::int32_t Count, const std::u16string &Text) {
  return ToDecimal(static_cast<std::uint64_t>(Count)) + u" " + Text;
}

} // namespace

Tfrm_main::Tfrm_main(TLook &Look, TWorkbench &Bench)
    : TForm(Look, nullptr, MainTable(), Handlers()), Bench_(Bench), Clean_(Bench.Platform),
      Pane_(*this), Details_(*this), List_(Find<TListView>(u"Lv_problems")),
      Status_(Find<TStatusBar>(u"dxStatusBar1")), Timer_(Find<TTimer>(u"Timer1")) {
  for (const std::u16string_view Images : {u"Images_small", u"Images_large", u"Images_rows"})
    FillImages(Find<TImageList>(Images));
  Find<TMenuItem>(u"dxBarButton9").SetChecked(true);
  if (Bench_.LimitedRights)
    Status_.AddPanel(Bench_.Text(LanguageText(u"LimitedRights")));
}

std::vector<TNamedHandler> Tfrm_main::Handlers() {
  return {Handler(u"FormShow", this, &Tfrm_main::FormShow),
          Handler(u"ImageNote_1Click", this, &Tfrm_main::ImageNote_1Click),
          Handler(u"dxBarButton7Click", this, &Tfrm_main::dxBarButton7Click),
          Handler(u"dxBarButton8Click", this, &Tfrm_main::dxBarButton8Click),
          Handler(u"dxBarButton6Click", this, &Tfrm_main::dxBarButton6Click),
          Handler(u"dxBarLargeButton4Click", this, &Tfrm_main::dxBarLargeButton4Click),
          Handler(u"dxBarButton2Click", this, &Tfrm_main::dxBarButton2Click),
          Handler(u"dxBarButton19Click", this, &Tfrm_main::dxBarButton19Click),
          Handler(u"dxBarButton11Click", this, &Tfrm_main::dxBarButton11Click),
          Handler(u"dxBarButton10Click", this, &Tfrm_main::dxBarButton10Click),
          Handler(u"dxBarButton9Click", this, &Tfrm_main::dxBarButton9Click),
          Handler(u"PopupMenu1Popup", this, &Tfrm_main::PopupMenu1Popup),
          Handler(u"checkall1Click", this, &Tfrm_main::checkall1Click),
          Handler(u"Nonechecked1Click", this, &Tfrm_main::Nonechecked1Click),
          Handler(u"InverseSelection1Click", this, &Tfrm_main::InverseSelection1Click),
          Handler(u"CheckBox_selectallMouseUp", this, &Tfrm_main::CheckBox_selectallMouseUp),
          Handler(u"Lv_problemsData", this, &Tfrm_main::Lv_problemsData),
          Handler(u"Lv_problemsClick", this, &Tfrm_main::Lv_problemsClick),
          Handler(u"Lv_problemsColumnClick", this, &Tfrm_main::Lv_problemsColumnClick),
          Handler(u"Lv_problemsCustomDrawItem", this, &Tfrm_main::Lv_problemsCustomDrawItem),
          Handler(u"Jumptoentry1Click", this, &Tfrm_main::Jumptoentry1Click),
          Handler(u"Lab_msClick", this, &Tfrm_main::Lab_msClick),
          Handler(u"IgnoredProblem1Click", this, &Tfrm_main::IgnoredProblem1Click),
          Handler(u"Timer1Timer", this, &Tfrm_main::Timer1Timer)};
}

void Tfrm_main::FormShow(TComponent &) {
  const TLayoutPause Pause(*this);
  Translate(Bench_.Language, *this);
  List_.SetColumnCaption(0, std::u16string(FirstColumnIndent) +
                                Bench_.Text(LanguageText(u"LvproblemstypeCaption")));
  List_.FitLastColumn();
  Pane_.NameEntries();
  ShowCategory(SummaryCategory, true);
  if (const std::vector<TError> Interrupted = Clean_.InterruptedRestores(); !Interrupted.empty())
    SetWelcome(Bench_.Language.Words(Interrupted.front()) + u".");
  GiveFocus(List_);
}

// ---- runs ------------------------------------------------------------------------------

void Tfrm_main::BeginRun() {
  List_.SetRowCount(0);
  ShowCategoryDetails();
  Timer_.SetEnabled(true);
}

void Tfrm_main::ClearCounts() {
  Pane_.ClearCounts();
  Details_.SetCount(Pane_.Number(Category_));
}

void Tfrm_main::EndRun(bool Scanned) {
  Timer_.SetEnabled(false);
  Bench_.SelectedCount = Bench_.Problems.CheckedCount();
  RefreshCounts();
  ShowTotal();
  ShowSelection();
  ShowCategory(Scanned ? SummaryCategory : Category_, true);
}

void Tfrm_main::RefreshCounts() {
  Pane_.ShowCounts(Bench_.Problems);
  Details_.SetCount(Pane_.Number(Category_));
}

void Tfrm_main::Timer1Timer(TComponent &) {
  if (Bench_.Busy)
    RefreshCounts();
}

// ---- categories and rows ---------------------------------------------------------------

void Tfrm_main::ImageNote_1Click(TComponent &Sender) {
  ShowCategory(TCategoryPane::CategoryOf(Sender), false);
}

// The rows of a category that is shown already stay as they are, unless they are to be
// taken anew.
void Tfrm_main::ShowCategory(int Category, bool Anew) {
  const bool Rebuild = Anew || Category != Category_;
  Category_ = Category;
  Pane_.Mark(Category);
  Details_.SetCount(Pane_.Number(Category));
  ShowCategoryDetails();
  if (Rebuild)
    RebuildView();
}

void Tfrm_main::ShowCategoryDetails() {
  if (Category_ == SummaryCategory)
    Details_.ShowSummary(Bench_.Text(LanguageText(u"Title")), Clean_,
                         Bench_.Text(LanguageText(u"LabelNone")));
  else
    Details_.ShowCategory(Pane_.Caption(Category_),
                          Bench_.Text(AreaDescriptions[AreaIndex(Category_ - SummaryCategory)]));
}

// Messages are handled meanwhile. Whatever they bring - another category, a whole run -
// has come to its end, and left a view that is whole, before this goes on.
void Tfrm_main::RebuildView() {
  List_.SetRowCount(0);
  Bench_.Problems.BuildView(Pane_.GroupName(Category_));
  List_.SetRowCount(Bench_.Problems.ViewCount());
  ShowSelectAll();
}

TItemInfo *Tfrm_main::ItemOf(int Row) const {
  TProblemRow Found;
  return Row < List_.RowCount() && Bench_.Problems.GetRow(Row, Found) ? Found.Item : nullptr;
}

void Tfrm_main::SelectItem(const TItemInfo *Item) {
  const auto &Items = Bench_.Problems.ViewItems();
  const auto Found = std::find(Items.begin(), Items.end(), Item);
  List_.Select(Item && Found != Items.end() ? static_cast<int>(Found - Items.begin()) : -1);
}

void Tfrm_main::ShowSelected() {
  if (const TItemInfo *Item = ItemOf(List_.Selected()))
    Details_.ShowProblem(*Item);
}

void Tfrm_main::Lv_problemsData(TListView &Sender, int Row, TListCells &Cells) {
  TProblemRow Found;
  if (Row >= Sender.RowCount() || !Bench_.Problems.GetRow(Row, Found))
    return;
  for (const std::u16string_view Text :
       {Found.Caption, Found.RiskText, Found.KeyPath, Found.Data, Found.ImageIndex})
    Cells.Texts.emplace_back(Text);
  Cells.Image = Found.Image;
  // Nothing has graded what the user has ignored.
  Cells.SubImages = {Found.RiskImage > 0 ? Found.RiskImage : -1};
  Cells.Checked = Found.Item->Checked;
}

void Tfrm_main::Lv_problemsCustomDrawItem(TListView &, int Row, TRowLook &Look) {
  const TItemInfo *Item = ItemOf(Row);
  if (!Item)
    return;
  switch (static_cast<TIcon>(Item->RiskImage)) {
  case TIcon::RiskHigh:
    Look.Ground = TColorRole::RiskHigh;
    break;
  case TIcon::RiskMedium:
    Look.Ground = TColorRole::RiskMedium;
    break;
  case TIcon::RiskLow:
    Look.Ground = TColorRole::RiskLow;
    break;
  default:
    break;
  }
}

void Tfrm_main::Lv_problemsClick(TComponent &) {
  const int Row = List_.RowAt(List_.PressedAt());
  TItemInfo *Item = Row >= 0 ? ItemOf(Row) : nullptr;
  if (!Item || !List_.CheckBounds(Row).Contains(List_.PressedAt())) {
    ShowSelected();
    return;
  }
  Item->Checked = !Item->Checked;
  Bench_.SelectedCount += Item->Checked ? 1 : -1;
  ShowSelection();
  ShowSelectAll();
  List_.RefreshRow(Row);
}

void Tfrm_main::Lv_problemsColumnClick(TListView &Sender, int Column) {
  const TItemInfo *Selected = ItemOf(Sender.Selected());
  Bench_.Problems.SortBy(Column);
  SelectItem(Selected);
  Sender.Refresh();
}

// ---- selection for fixing --------------------------------------------------------------

void Tfrm_main::checkall1Click(TComponent &) {
  Bench_.Problems.CheckAll(true);
  SelectionChanged();
}

void Tfrm_main::Nonechecked1Click(TComponent &) {
  Bench_.Problems.CheckAll(false);
  SelectionChanged();
}

void Tfrm_main::InverseSelection1Click(TComponent &) {
  for (TItemInfo *const Item : Bench_.Problems.ViewItems())
    Item->Checked = !Item->Checked;
  SelectionChanged();
}

void Tfrm_main::CheckBox_selectallMouseUp(TComponent &Sender) {
  Bench_.Problems.CheckAll(dynamic_cast<const TCheckBox &>(Sender).Checked());
  SelectionChanged();
}

void Tfrm_main::SelectionChanged() {
  Bench_.SelectedCount = Bench_.Problems.CheckedCount();
  ShowSelection();
  ShowSelectAll();
  List_.Refresh();
}

void Tfrm_main::ShowSelection() {
  Status_.SetPanelText(
      1, Counted(Bench_.SelectedCount, Bench_.Text(LanguageText(u"StatusbarPanel2Text"))));
}

// The box tells of the rows that are shown.
void Tfrm_main::ShowSelectAll() {
  const auto &Items = Bench_.Problems.ViewItems();
  Find<TCheckBox>(u"CheckBox_selectall")
      .SetChecked(!Items.empty() &&
                  std::all_of(Items.begin(), Items.end(),
                              [](const TItemInfo *Item) { return Item->Checked; }));
}

void Tfrm_main::ShowTotal() {
  Status_.SetPanelText(
      0, Counted(Bench_.Problems.TotalCount(), Bench_.Text(LanguageText(u"StatusbarPanel1Text"))));
}

// ---- commands ----------------------------------------------------------------------------

void Tfrm_main::dxBarButton7Click(TComponent &) {
  Bench_.DialogMode = TDialogMode::Scan;
  Tfrm_check Dialog(*this, Bench_, *this);
  Dialog.ShowModal();
}

void Tfrm_main::dxBarButton8Click(TComponent &) {
  const std::int32_t Selected = Bench_.Problems.CheckedCount();
  if (Selected == 0) {
    Tell(*this, Bench_.Language, LanguageText(u"NoErrorSelected"), TMessageKind::Information);
    return;
  }
  Bench_.DialogMode = TDialogMode::Fix;
  Bench_.SelectedCount = Selected;
  Tfrm_check Dialog(*this, Bench_, *this);
  Dialog.ShowModal();
}

void Tfrm_main::dxBarButton6Click(TComponent &) {
  Tfrm_ignored Dialog(*this, Bench_, *this);
  Dialog.ShowModal();
}

void Tfrm_main::dxBarLargeButton4Click(TComponent &) {
  Tfrm_rescue Dialog(*this, Bench_);
  Dialog.ShowModal();
}

void Tfrm_main::dxBarButton2Click(TComponent &) { Close(); }

void Tfrm_main::dxBarButton19Click(TComponent &) { NavigateToHomePage(*this, Bench_); }

void Tfrm_main::dxBarButton11Click(TComponent &) { ShowAbout(*this, Bench_); }

void Tfrm_main::dxBarButton10Click(TComponent &) { OpenManual(*this, Bench_); }

TAnswer Tfrm_main::Receive(const TMessage &Message) {
  if (Message.Id != WM_HELP)
    return TForm::Receive(Message);
  OpenManual(*this, Bench_);
  return 1;
}

void Tfrm_main::dxBarButton9Click(TComponent &Sender) {
  Details_.ShowDescriptions(!Details_.ShowsDescriptions());
  dynamic_cast<TMenuItem &>(Sender).SetChecked(Details_.ShowsDescriptions());
}

void Tfrm_main::PopupMenu1Popup(TComponent &) {
  // A press of the right button selects, too.
  ShowSelected();
  for (const std::u16string_view Entry : {u"Jumptoentry1", u"IgnoredProblem1"})
    Find<TMenuItem>(Entry).SetEnabled(List_.Selected() >= 0);
}

void Tfrm_main::Jumptoentry1Click(TComponent &) {
  if (const TItemInfo *Item = ItemOf(List_.Selected()))
    OpenEntry(Item->KeyPath, Item->Data);
}

void Tfrm_main::Lab_msClick(TComponent &) {
  if (Details_.HasProblem())
    OpenEntry(Details_.KeyPath(), Details_.Data());
}

// A problem of a file has the file's path where others have a key.
void Tfrm_main::OpenEntry(std::u16string_view KeyPath, std::u16string_view Data) {
  if (KeyPath.starts_with(u"HKEY_"))
    OpenInRegistryEditor(Bench_.Platform, KeyPath);
  else
    Bench_.Platform.Shell->Open(u"explorer", std::u16string(u" /select,").append(Data));
}

void Tfrm_main::IgnoredProblem1Click(TComponent &) {
  const int Row = List_.Selected();
  const TItemInfo *Item = ItemOf(Row);
  if (!Item)
    return;
  if (const TError Error = Clean_.IgnoreList.Add(Item->KeyPath, Item->ValueName)) {
    ShowMessage(this,
                Bench_.Text(LanguageText(u"IgnoreFailed")) + u" " + Bench_.Language.Words(Error),
                Bench_.Text(LanguageText(u"Title")), TMessageKind::Warning);
    return;
  }
  Bench_.SelectedCount -= Item->Checked ? 1 : 0;
  List_.Select(-1);
  Bench_.Problems.DropFromView(Item);
  Bench_.Problems.DeleteItem(Item);
  List_.SetRowCount(Bench_.Problems.ViewCount());
  RefreshCounts();
  ShowTotal();
  ShowSelection();
  ShowSelectAll();
  ShowCategoryDetails();
  // So that the keyboard goes on where it was.
  List_.Select(std::min(Row, List_.RowCount() - 1));
  ShowSelected();
}

} // namespace hivesweep
