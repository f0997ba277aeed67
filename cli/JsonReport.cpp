#include <nlohmann/json.hpp>

#include "cli/ScanReport.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

using TJson = nlohmann::ordered_json;

// The library writes the characters from U+007F to U+009F as they are, which JSON
// allows. Some terminals take them for commands.
std::string WithEscapedControls(const std::string &Json) {
  static constexpr char Digits[] = "0123456789abcdef";
  std::string Out;
  Out.reserve(Json.size());
  for (std::size_t Index = 0; Index < Json.size(); ++Index) {
    unsigned char Byte = static_cast<unsigned char>(Json[Index]);
    const bool IsHigh = Byte == 0xC2 && Index + 1 < Json.size() &&
                        static_cast<unsigned char>(Json[Index + 1]) < 0xA0;
    if (Byte != 0x7F && !IsHigh) {
      Out.push_back(Json[Index]);
      continue;
    }
    if (IsHigh)
      Byte = static_cast<unsigned char>(Json[++Index]);
    Out.append("\\u00").append({Digits[Byte >> 4], Digits[Byte & 15]});
  }
  return Out;
}

std::string OneLine(const TJson &Value) {
  return WithEscapedControls(Value.dump(-1, ' ', false, TJson::error_handler_t::replace));
}

// "key":[...], one element a line: long lists stay readable, and line tools can work
// on them.
template <typename TElements, typename TMake>
void AddArray(const char *Key, const TElements &Elements, TMake Make, std::string &Out) {
  Out.append("\"").append(Key).append("\":[");
  const char *Break = "\n";
  for (const auto &Element : Elements) {
    Out.append(Break).append(OneLine(Make(Element)));
    Break = ",\n";
  }
  Out.append("]");
}

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
  AddArray("areas", Areas, AreaWithResult, Out);
  Out += ",\n";
  AddArray("problems", Report.Problems, ProblemFields, Out);
  Out += ",\n";
  if (Report.Protected) {
    AddArray("protected", *Report.Protected, ProtectedFields, Out);
    Out += ",\n";
  }
  AddArray(
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
  AddArray("areas", Rows, Fields, Out);
  return Out + "}\n";
}

} // namespace hivesweep
