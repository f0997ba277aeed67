#include <vector>

#include "cli/CsvText.h"
#include "cli/ScanReport.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

std::u16string Number(int Value) { return ToDecimal(static_cast<std::uint64_t>(Value)); }

} // namespace

std::string CsvReport(const TScanReport &Report) {
  const auto Write = [&](std::vector<std::u16string> Fields, const std::u16string &Rule) {
    if (Report.Protected)
      Fields.push_back(Rule);
    return CsvRecord(Fields);
  };
  std::string Out =
      Write({u"id", u"area", u"switch", u"risk", u"selected", u"type", u"key", u"value", u"data"},
            u"rule");
  for (const TReportedProblem &Problem : Report.Problems) {
    const TArea &Area = AreaByNumber(Problem.Area);
    const TItemInfo &Item = *Problem.Item;
    Out += Write({FromUtf8(Problem.Id), Number(Area.Number), std::u16string(Area.Switch),
                  std::u16string(RiskName(Area.Risk)), Item.Checked ? u"yes" : u"no", Item.TypeName,
                  Item.KeyPath, Item.ValueName, Item.Data},
                 u"");
  }
  if (!Report.Protected)
    return Out;
  for (const TProtectedItem &Item : *Report.Protected) {
    const TArea &Area = AreaByNumber(Item.Area);
    Out += Write({u"", Number(Area.Number), std::u16string(Area.Switch),
                  std::u16string(RiskName(Area.Risk)), u"protected", u"", Item.KeyPath,
                  Item.ValueName, Item.Data},
                 Item.Protection.RuleText());
  }
  return Out;
}

std::string AreasCsv(const std::vector<TAreaRow> &Rows) {
  std::string Out = CsvRecord({u"area", u"switch", u"caption", u"risk", u"on"});
  for (const TAreaRow &Row : Rows)
    Out += CsvRecord({Number(Row.Area.Number), std::u16string(Row.Area.Switch),
                      std::u16string(Row.Area.Caption), std::u16string(RiskName(Row.Area.Risk)),
                      Row.IsOn ? u"yes" : u"no"});
  return Out;
}

} // namespace hivesweep
