#include "ui/ReportForm.h"

#include <array>

#include "controls/Clipboard.h"
#include "controls/ListView.h"
#include "ui/FormTexts.h"

namespace hivesweep {

namespace {

TFormTable ReportTable() {
  return {
      .Name = u"frm_report",
      .Caption = u"Report",
      .Size = {480, 300},
      .Start = TSize{760, 400},
      .Resizable = true,
      .On = {{TEvent::Show, u"FormShow"}},
      .Rows =
          {
              {.Name = u"PopupMenu1", .Kind = TKind::PopupMenu},
              {.Name = u"CopyRow",
               .Kind = TKind::MenuItem,
               .Caption = u"Copy",
               .Parent = u"PopupMenu1",
               .On = {{TEvent::Click, u"CopyRowClick"}}},
              {.Name = u"CopyAll",
               .Kind = TKind::MenuItem,
               .Caption = u"Copy All",
               .Parent = u"PopupMenu1",
               .On = {{TEvent::Click, u"Bt_copyClick"}}},
              {.Name = u"Lab_summary",
               .Place = {16, 16, 448, 18},
               .Anchors = Edges::Across,
               .Wrapped = true},
              {.Name = u"Lv_report",
               .Kind = TKind::ListView,
               .Place = {16, 42, 448, 140},
               .On = {{TEvent::Data, u"Lv_reportData"},
                      {TEvent::MouseDown, u"Lv_reportMouseDown"},
                      {TEvent::Copy, u"CopyRowClick"}},
               .Anchors = Edges::All,
               .Virtual = true,
               .Columns = {{u"Registry key or file", 300}, {u"Value", 100}, {u"Reason", 160}},
               .Popup = u"PopupMenu1"},
              {.Name = u"Lab_reason", // of the selected row, as long as it is
               .Place = {16, 190, 448, 50},
               .Anchors = Edges::Bottom,
               .Wrapped = true,
               .Ellipsis = true},
              {.Name = u"Bt_copy",
               .Kind = TKind::Button,
               .Place = {288, 258, 84, 26},
               .Caption = u"Copy All",
               .On = {{TEvent::Click, u"Bt_copyClick"}},
               .Anchors = Edges::BottomRight},
              {.Name = u"Bt_close",
               .Kind = TKind::Button,
               .Place = {380, 258, 84, 26},
               .Caption = u"Close",
               .On = {{TEvent::Click, u"Bt_closeClick"}},
               .Anchors = Edges::BottomRight,
               .Default = true,
               .Cancel = true},
          },
  };
}

// The registry may hold any unit in a name. One that would end the text, or its cell in a
// table, is shown as a dot.
std::u16string AsShown(std::u16string_view Text) {
  std::u16string Out(Text);
  for (char16_t &Unit : Out)
    if (Unit < u' ' || Unit == u'\x7F')
      Unit = u'\u00B7';
  return Out;
}

std::array<std::u16string, 3> CellsOf(const TReportRow &Row) {
  return {AsShown(Row.Path), AsShown(Row.Value), AsShown(Row.Reason)};
}

} // namespace

Tfrm_report::Tfrm_report(TForm &Above, TWorkbench &Bench, std::u16string_view Summary,
                         std::vector<TReportRow> Rows)
    : TForm(Above.FormLook(), &Above, ReportTable(), Handlers()), Bench_(Bench),
      Rows_(std::move(Rows)), List_(Find<TListView>(u"Lv_report")) {
  Find<TControl>(u"Lab_summary").SetText(Summary);
  List_.SetRowCount(static_cast<int>(Rows_.size()));
  List_.FitLastColumn();
  List_.Select(Rows_.empty() ? -1 : 0);
}

std::vector<TNamedHandler> Tfrm_report::Handlers() {
  return {Handler(u"FormShow", this, &Tfrm_report::FormShow),
          Handler(u"Lv_reportData", this, &Tfrm_report::Lv_reportData),
          Handler(u"Lv_reportMouseDown", this, &Tfrm_report::Lv_reportMouseDown),
          Handler(u"CopyRowClick", this, &Tfrm_report::CopyRowClick),
          Handler(u"Bt_copyClick", this, &Tfrm_report::Bt_copyClick),
          Handler(u"Bt_closeClick", this, &Tfrm_report::Bt_closeClick)};
}

void Tfrm_report::FormShow(TComponent &) {
  Translate(Bench_.Language, *this);
  ShowReason();
  GiveFocus(List_);
}

void Tfrm_report::Bt_closeClick(TComponent &) { Close(); }

void Tfrm_report::Lv_reportData(TListView &, int Row, TListCells &Cells) {
  if (Row >= static_cast<int>(Rows_.size()))
    return;
  for (std::u16string &Text : CellsOf(Rows_[static_cast<std::size_t>(Row)]))
    Cells.Texts.push_back(std::move(Text));
}

void Tfrm_report::Lv_reportMouseDown(TComponent &) { ShowReason(); }

void Tfrm_report::ShowReason() {
  const int Row = List_.Selected();
  Find<TControl>(u"Lab_reason")
      .SetText(Row < 0 ? u"" : AsShown(Rows_[static_cast<std::size_t>(Row)].Reason));
}

void Tfrm_report::CopyRowClick(TComponent &) {
  if (List_.Selected() >= 0)
    Copy(List_.Selected(), 1);
}

void Tfrm_report::Bt_copyClick(TComponent &) { Copy(0, List_.RowCount()); }

// A line for each row, its cells apart by tabs: a table, wherever it is pasted.
void Tfrm_report::Copy(int First, int Count) {
  std::u16string Text;
  for (int Row = First; Row < First + Count; ++Row) {
    const std::array<std::u16string, 3> Cells = CellsOf(Rows_[static_cast<std::size_t>(Row)]);
    Text += Cells[0] + u"\t" + Cells[1] + u"\t" + Cells[2] + u"\r\n";
  }
  if (!CopyText(*this, Text))
    Tell(*this, Bench_.Language, LanguageText(u"CopyFailed"), TMessageKind::Warning);
}

} // namespace hivesweep
