#include "cli/JsonText.h"
#include "cli/ScanReport.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

TJson AreaFields(const TArea &Area) {
  return {{"number", Area.Number},
          {"switch", ToUtf8(Area.Switch)},
          {"group", ToUtf8(Area.GroupName)},
          {"caption", ToUtf8(Area.Caption)},
          {"risk", ToUtf8(RiskName(Area.Risk))}};
}

TJson ProblemFields(const TReportedProblem &Problem) {
  const TItemInfo &Item = *Problem.Item;
  return {{"id", Problem.Id},
          {"area", Problem.Area},
          {"group", ToUtf8(AreaByNumber(Problem.Area).GroupName)},
          {"TypeName", ToUtf8(Item.TypeName)},
          {"KeyPath", ToUtf8(Item.KeyPath)},
          {"ValueName", ToUtf8(Item.ValueName)},
          {"Data", ToUtf8(Item.Data)},
          {"ImageIndex", ToUtf8(Item.ImageIndex)},
          {"ItemKind", Item.ItemKind},
          {"RiskText", ToUtf8(Item.RiskText)},
          {"RiskImage", Item.RiskImage},
          {"Checked", Item.Checked}};
}

TJson ProtectedFields(const TProtectedItem &Item) {
  return {{"area", Item.Area},
          {"KeyPath", ToUtf8(Item.KeyPath)},
          {"ValueName", ToUtf8(Item.ValueName)},
          {"Data", ToUtf8(Item.Data)},
          {"rule", ToUtf8(Item.Protection.RuleText())}};
}

} // namespace

std::string JsonReport(const TScanReport &Report) {
  const auto AreaWithResult = [&](const TArea &Area) {
    const TAreaResult &Result = Report.AreaResults[AreaIndex(Area.Number)];
    TJson Out = AreaFields(Area);
    Out["scanned"] = Result.Scanned;
    Out["found"] = Result.Found;
    Out["listed"] = Result.Listed;
    Out["protected"] = Result.Protected;
    return Out;
  };
  std::string Out = "{";
  AddJsonArray("areas", Areas, AreaWithResult, Out);
  Out += ",\n";
  AddJsonArray("problems", Report.Problems, ProblemFields, Out);
  Out += ",\n";
  if (Report.Protected) {
    AddJsonArray("protected", *Report.Protected, ProtectedFields, Out);
    Out += ",\n";
  }
  AddJsonArray(
      "backup", Report.BackupText, [](const std::u16string &Line) { return TJson(ToUtf8(Line)); },
      Out);
  return Out + ",\n\"total\":" + std::to_string(Report.Problems.size()) + "}\n";
}

std::string AreasJson(const std::vector<TAreaRow> &Rows) {
  const auto Fields = [](const TAreaRow &Row) {
    TJson Out = AreaFields(Row.Area);
    Out["on"] = Row.IsOn;
    return Out;
  };
  std::string Out = "{";
  AddJsonArray("areas", Rows, Fields, Out);
  return Out + "}\n";
}

} // namespace hivesweep
