#include "engine/RiskGrading.h"

#include "platform/Text.h"

namespace hivesweep {

TRisk RiskOf(const TItemInfo &Item) {
  for (const TArea &Area : Areas)
    if (Item.ImageIndex == ToDecimal(static_cast<std::uint64_t>(Area.Number)))
      return Area.Risk;
  return TRisk::Low;
}

std::int32_t GradeRisks(TListViewManage &Problems, const TRiskTexts &Texts,
                        const std::function<bool(std::u16string_view KeyPath)> &IsIgnored,
                        const std::function<bool()> &GoesOn) {
  std::int32_t Selected = 0;
  bool IsStopped = false;
  const std::uint32_t Version = Problems.Version();
  for (std::size_t Row = 0; Row < Problems.ViewItems().size(); ++Row) {
    IsStopped = IsStopped || !GoesOn();
    if (Problems.Version() != Version)
      return Selected;
    TItemInfo *const Item = Problems.ViewItems()[Row];
    if (IsStopped)
      Item->Checked = false;
    else if (IsIgnored(Item->KeyPath))
      continue;
    switch (RiskOf(*Item)) {
    case TRisk::High:
      Item->RiskImage = 20;
      Item->RiskText = Texts.High;
      Item->Checked = false;
      break;
    case TRisk::Medium:
      Item->RiskImage = 19;
      Item->RiskText = Texts.Medium;
      break;
    case TRisk::Low:
      Item->RiskImage = 18;
      Item->RiskText = Texts.Low;
      break;
    }
    Selected += Item->Checked ? 1 : 0;
  }
  return Selected;
}

} // namespace hivesweep
