#include "cli/ScanReport.h"

#include "cli/FindingId.h"

namespace hivesweep {

namespace {

std::vector<TReportedProblem> Listed(const TListViewManage &Problems) {
  TFindingIds Ids;
  std::vector<TReportedProblem> Out;
  for (const TArea &Area : Areas) {
    const TGroupItems *const Group = Problems.FindGroup(Area.GroupName);
    for (std::int32_t Index = 0; Group && Index < Group->Count(); ++Index) {
      TItemInfo *const Item = Group->Get(Index);
      Out.push_back({Area.Number, Item, Ids.Next(Area.Number, *Item)});
    }
  }
  return Out;
}

} // namespace

TScanReport::TScanReport(const TListViewManage &List, const TScanRegistry &Engine,
                         bool ShowProtected)
    : AreaResults(Engine.AreaResults()), Problems(Listed(List)),
      Protected(ShowProtected ? &Engine.ProtectedItems() : nullptr), BackupText(Engine.BackupText),
      Selected(List.CheckedCount()) {}

std::u16string_view RiskName(TRisk Risk) {
  switch (Risk) {
  case TRisk::Low:
    return u"low";
  case TRisk::Medium:
    return u"medium";
  case TRisk::High:
    break;
  }
  return u"high";
}

} // namespace hivesweep
