#include <vector>

#include "cli/ScanReport.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// The format knows no control characters but line breaks inside quotes, and who
// prints the file on a terminal is glad of that.
std::string Field(std::u16string Text) {
  for (char16_t &Unit : Text)
    if ((Unit < 0x20 && Unit != u'\r' && Unit != u'\n') || (Unit >= 0x7F && Unit < 0xA0))
      Unit = 0xFFFD;
  const bool NeedsQuotes = Text.find_first_of(u",\"\r\n") != std::u16string::npos ||
                           Text.starts_with(u' ') || Text.ends_with(u' ');
  std::string Utf8 = ToUtf8(Text);
  if (!NeedsQuotes)
    return Utf8;
  std::string Out = "\"";
  for (const char Byte : Utf8)
    Out.append(Byte == '"' ? 2 : 1, Byte);
  return Out + "\"";
}

std::string Record(const std::vector<std::u16string> &Fields) {
  std::string Out;
  for (const std::u16string &Text : Fields) {
    if (&Text != &Fields.front())
      Out.push_back(',');
    Out += Field(Text);
  }
  return Out + "\r\n";
}

std::u16string Number(int Value) { return ToDecimal(static_cast<std::uint64_t>(Value)); }

} // namespace

std::string CsvReport(const TScanReport &Report) {
  const auto Write = [&](std::vector<std::u16string> Fields, const std::u16string &Rule) {
    if (Report.Protected)
      Fields.push_back(Rule);
    return Record(Fields);
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
  std::string Out = Record({u"area", u"switch", u"caption", u"risk", u"on"});
  for (const TAreaRow &Row : Rows)
    Out += Record({Number(Row.Area.Number), std::u16string(Row.Area.Switch),
                   std::u16string(Row.Area.Caption), std::u16string(RiskName(Row.Area.Risk)),
                   Row.IsOn ? u"yes" : u"no"});
  return Out;
}

} // namespace hivesweep
