#include "ui/IgnoredForm.h"

#include "controls/Button.h"
#include "controls/ListView.h"
#include "ui/FormTexts.h"
#include "ui/Views.h"

namespace hivesweep {

namespace {

TFormTable IgnoredTable() {
  return {
      .Name = u"frm_ignored",
      .Caption = u"Ignored Problems",
      .Size = {576, 300},
      .Start = TSize{576, 380},
      .Resizable = true,
      .On = {{TEvent::Show, u"FormShow"}, {TEvent::Close, u"FormClose"}},
      .Rows =
          {
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
               .Place = {16, 16, 544, 32},
               .Caption = u"The below list contains all programs that are currently ignored by "
                          u"Hivesweep. If you do not want to ignore some programs, select them "
                          u"and click \"Remove\" button.",
               .Anchors = Edges::Across,
               .Wrapped = true},
              {.Name = u"Label_title",
               .Place = {16, 60, 544, 18},
               .Caption = u"Ignored problems:",
               .Anchors = Edges::Across,
               .Font = TFontRole::Bold},
              {.Name = u"Lv_ignored",
               .Kind = TKind::ListView,
               .Place = {16, 82, 544, 160},
               .On = {{TEvent::MouseDown, u"Lv_ignoredMouseDown"}},
               .Anchors = Edges::All,
               .Checks = true,
               .Columns = {{u"Registry key", 370}, {u"Registry value", 150}},
               .Popup = u"PopupMenu1"},
              {.Name = u"Bt_remove",
               .Kind = TKind::Button,
               .Place = {384, 258, 84, 26},
               .Caption = u"Remove",
               .On = {{TEvent::Click, u"Bt_removeClick"}},
               .Anchors = Edges::BottomRight,
               .Enabled = false,
               .Default = true},
              {.Name = u"Bt_close",
               .Kind = TKind::Button,
               .Place = {476, 258, 84, 26},
               .Caption = u"Close",
               .On = {{TEvent::Click, u"Bt_closeClick"}},
               .Anchors = Edges::BottomRight,
               .Cancel = true},
          },
  };
}

} // namespace

Tfrm_ignored::Tfrm_ignored(TForm &Above, TWorkbench &Bench, TMainView &Main)
    : TForm(Above.FormLook(), &Above, IgnoredTable(), Handlers()), Bench_(Bench), Main_(Main),
      List_(Find<TListView>(u"Lv_ignored")), Remove_(Find<TButton>(u"Bt_remove")) {
  FormCreate(); // not as the form's event, which comes before the members are there
}

std::vector<TNamedHandler> Tfrm_ignored::Handlers() {
  return {Handler(u"FormShow", this, &Tfrm_ignored::FormShow),
          Handler(u"FormClose", this, &Tfrm_ignored::FormClose),
          Handler(u"Lv_ignoredMouseDown", this, &Tfrm_ignored::Lv_ignoredMouseDown),
          Handler(u"SelectAll1Click", this, &Tfrm_ignored::SelectAll1Click),
          Handler(u"SelectAll2Click", this, &Tfrm_ignored::SelectAll2Click),
          Handler(u"Bt_removeClick", this, &Tfrm_ignored::Bt_removeClick),
          Handler(u"Bt_closeClick", this, &Tfrm_ignored::Bt_closeClick)};
}

void Tfrm_ignored::FormCreate() {
  Clean_ = std::make_unique<TRegistryClean>(Bench_.Platform);
  FillList();
  List_.FitLastColumn();
}

void Tfrm_ignored::FormShow(TComponent &) {
  Translate(Bench_.Language, *this);
  GiveFocus(List_);
}

void Tfrm_ignored::FormClose(TComponent &) { Clean_.reset(); }

void Tfrm_ignored::Bt_closeClick(TComponent &) { Close(); }

// Rows that come new are not checked.
void Tfrm_ignored::FillList() {
  TPlainRows Rows(List_);
  Clean_->IgnoreList.Fill(Rows);
  UpdateRemoveButton();
}

void Tfrm_ignored::Lv_ignoredMouseDown(TComponent &) { UpdateRemoveButton(); }
void Tfrm_ignored::SelectAll1Click(TComponent &) { CheckAll(true); }
void Tfrm_ignored::SelectAll2Click(TComponent &) { CheckAll(false); }

void Tfrm_ignored::CheckAll(bool Checked) {
  for (int Row = 0; Row < List_.RowCount(); ++Row)
    List_.SetChecked(Row, Checked);
  UpdateRemoveButton();
}

std::vector<std::u16string> Tfrm_ignored::CheckedKeys() const {
  std::vector<std::u16string> Keys;
  for (int Row = 0; Row < List_.RowCount(); ++Row)
    if (List_.Checked(Row))
      Keys.push_back(List_.Cells(Row).Texts.front());
  return Keys;
}

void Tfrm_ignored::UpdateRemoveButton() { Remove_.SetEnabled(!CheckedKeys().empty()); }

void Tfrm_ignored::Bt_removeClick(TComponent &) {
  TError Error; // the first; what can't be removed is still in the list
  for (const std::u16string &Key : CheckedKeys())
    if (TError Failed = Clean_->IgnoreList.Remove(Key); Failed && !Error)
      Error = std::move(Failed);
  Main_.RefreshCounts();
  FillList();
  if (Error)
    ShowMessage(this,
                Bench_.Text(LanguageText(u"UnignoreFailed")) + u" " + Bench_.Language.Words(Error),
                Bench_.Text(LanguageText(u"Title")), TMessageKind::Warning);
}

} // namespace hivesweep
