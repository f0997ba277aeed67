#include "ui/DetailsArea.h"

#include "controls/Form.h"
#include "controls/Panel.h"
#include "ui/MainTable.h"
#include "ui/Views.h"

namespace hivesweep {

TDetailsArea::TDetailsArea(TForm &Form)
    : Form_(Form), Title_(Form.Find<TLabel>(u"Lab_reg")), Count_(Form.Find<TLabel>(u"Lab_count")),
      Welcome_(Form.Find<TLabel>(u"Lab_welcome")), Text_(Form.Find<TLabel>(u"Lab_ms")),
      Value_(Form.Find<TLabel>(u"Lab_value")), Data_(Form.Find<TLabel>(u"Lab_data")) {
  Arrange(TKindShown::Summary);
}

void TDetailsArea::ShowSummary(std::u16string_view Title, const TRegistryClean &Clean,
                               std::u16string_view NoneText) {
  const TLayoutPause Pause(Form_);
  Arrange(TKindShown::Summary);
  Title_.SetText(Title);
  TLabelStatus LastScan(Form_.Find<TLabel>(u"Lab_scanvalue"));
  TLabelStatus LastFix(Form_.Find<TLabel>(u"Lab_lastvlaue"));
  TLabelStatus Total(Form_.Find<TLabel>(u"Lab_totalvalue"));
  Clean.LoadSummary(LastScan, LastFix, Total, NoneText);
}

void TDetailsArea::ShowCategory(std::u16string_view Title, std::u16string_view Description) {
  const TLayoutPause Pause(Form_);
  Arrange(TKindShown::Category);
  Title_.SetText(Title);
  Text_.SetText(Description);
}

void TDetailsArea::ShowProblem(const TItemInfo &Item) {
  const TLayoutPause Pause(Form_);
  Arrange(TKindShown::Problem);
  Title_.SetText(Item.TypeName);
  Text_.SetText(Item.KeyPath);
  Value_.SetText(Item.ValueName);
  Data_.SetText(Item.Data);
}

void TDetailsArea::ShowDescriptions(bool Shown) {
  ShowsDescriptions_ = Shown;
  if (!HasProblem() && !Form_.Find<TPanel>(u"Panel_summary").Visible())
    Text_.SetVisible(Shown);
}

void TDetailsArea::Arrange(TKindShown Kind) {
  const bool IsProblem = Kind == TKindShown::Problem;
  Form_.Find<TPanel>(u"Panel_summary").SetVisible(Kind == TKindShown::Summary);
  for (const char16_t *const Name :
       {u"Lab_valuecaption", u"Lab_value", u"Lab_datacaption", u"Lab_data", u"Lab_pathcaption"})
    Form_.Find<TLabel>(Name).SetVisible(IsProblem);
  // A description takes the lines that it needs; the path of a problem has one line.
  Text_.SetVisible(IsProblem || (Kind == TKindShown::Category && ShowsDescriptions_));
  Text_.SetText(u"");
  Text_.SetLink(IsProblem);
  Text_.SetWrapped(!IsProblem);
  Text_.SetEllipsis(IsProblem);
  Text_.SetDesign(IsProblem ? LinkPlace : DescriptionPlace);
}

} // namespace hivesweep
