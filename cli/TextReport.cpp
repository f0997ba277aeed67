#include <algorithm>
#include <iterator>

#include "cli/ScanReport.h"
#include "cli/TextTable.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr int Indent = 2;

// From here on a problem has room on one line; before, its value goes below its key.
constexpr int OneLineWidth = 120;

std::u16string Number(std::int32_t Count) { return ToDecimal(static_cast<std::uint64_t>(Count)); }

std::u16string Counted(std::size_t Count, std::u16string_view One, std::u16string_view Many) {
  return ToDecimal(Count) + u" " + std::u16string(Count == 1 ? One : Many);
}

std::u16string ValueText(std::u16string_view ValueName) {
  return std::u16string(ValueName.empty() ? u"(default)" : ValueName);
}

// A value that is held back for bearing the mark of a whole key is shown by its name.
std::u16string ValueText(const TProtectedItem &Item) {
  const bool IsKey =
      Item.ValueName == WholeKey && Item.Protection.Source != TProtection::TSource::Unfixable;
  return IsKey ? u"(whole key)" : ValueText(Item.ValueName);
}

std::u16string Heading(const TArea &Area, const std::u16string &Count) {
  return std::u16string(Area.Caption) + u": " + Count + u", " +
         std::u16string(RiskName(Area.Risk)) + u" risk";
}

// The first of the records from Start on that belongs to another area.
template <typename TRecords> std::size_t EndOfArea(const TRecords &Records, std::size_t Start) {
  std::size_t End = Start;
  while (End < Records.size() && Records[End].Area == Records[Start].Area)
    ++End;
  return End;
}

// Walks records that stand area by area: a heading for each area, and a table.
template <typename TRecords, typename TAddRow>
void PrintByArea(const TRecords &Records, std::u16string_view One, std::u16string_view Many,
                 const std::vector<TTextColumn> &Columns, int Width, std::string &Out,
                 TAddRow AddRow) {
  for (std::size_t Start = 0; Start < Records.size();) {
    const std::size_t End = EndOfArea(Records, Start);
    AppendLine(Heading(AreaByNumber(Records[Start].Area), Counted(End - Start, One, Many)), Width,
               Out);
    TTextTable Table(Columns);
    for (; Start < End; ++Start)
      AddRow(Table, Records[Start]);
    Table.Print(Indent, Width, Out);
    Out.push_back('\n');
  }
}

void PrintProblems(const std::vector<TReportedProblem> &Problems, int Width, std::string &Out) {
  const bool OneLine = Width == 0 || Width >= OneLineWidth;
  std::vector<TTextColumn> Columns(OneLine ? 5 : 3);
  Columns[0].Cut = TCut::Never;
  Columns[1].Cut = TCut::End;
  PrintByArea(Problems, u"problem", u"problems", Columns, Width, Out,
              [&](TTextTable &Table, const TReportedProblem &Problem) {
                const TItemInfo &Item = *Problem.Item;
                const std::u16string Mark = Item.Checked ? u"[x]" : u"[ ]";
                const std::u16string Value = Item.Action == TFixAction::RemoveValue
                                                 ? ValueText(Item.ValueName)
                                                 : u"(whole key)";
                if (OneLine) {
                  Table.Add({Mark, Item.TypeName, Item.KeyPath, Value, Item.Data});
                } else {
                  Table.Add({Mark, Item.TypeName, Item.KeyPath});
                  Table.AddBelow({Value, Item.Data});
                }
              });
}

void PrintProtected(const TScanReport &Report, int Width, std::string &Out) {
  const bool OneLine = Width == 0 || Width >= OneLineWidth;
  std::vector<TTextColumn> Columns(OneLine ? 5 : 2);
  Columns[0].Cut = TCut::Never;
  PrintByArea(*Report.Protected, u"protected entry", u"protected entries", Columns, Width, Out,
              [&](TTextTable &Table, const TProtectedItem &Item) {
                const std::u16string Value = ValueText(Item);
                const std::u16string Rule = Item.Protection.RuleText();
                if (OneLine) {
                  Table.Add({u" - ", Item.KeyPath, Value, Item.Data, Rule});
                } else {
                  Table.Add({u" - ", Item.KeyPath});
                  Table.AddBelow({Value, Item.Data});
                  Table.AddBelow({Rule});
                }
              });
}

void PrintSummary(const TScanReport &Report, int Width, std::string &Out) {
  TTextTable Table({{u"Area", TCut::End},
                    {u"Risk", TCut::Never},
                    {u"Found", TCut::Never, true},
                    {u"Listed", TCut::Never, true},
                    {u"Protected", TCut::Never, true}});
  TAreaResult Total;
  for (const TArea &Area : Areas) {
    const TAreaResult &Result = Report.AreaResults[AreaIndex(Area.Number)];
    if (!Result.Scanned)
      continue;
    Table.Add({std::u16string(Area.Caption), std::u16string(RiskName(Area.Risk)),
               Number(Result.Found), Number(Result.Listed), Number(Result.Protected)});
    Total.Found += Result.Found;
    Total.Listed += Result.Listed;
    Total.Protected += Result.Protected;
  }
  Table.Add({u"Total", u"", Number(Total.Found), Number(Total.Listed), Number(Total.Protected)});
  Table.Print(0, Width, Out);

  Out.push_back('\n');
  AppendLine(Counted(Report.Problems.size(), u"problem", u"problems") + u", " +
                 Number(Report.Selected) + u" selected for fixing",
             Width, Out);
}

} // namespace

std::string TextReport(const TScanReport &Report, int Width) {
  std::string Out;
  PrintProblems(Report.Problems, Width, Out);
  if (Report.Protected)
    PrintProtected(Report, Width, Out);
  PrintSummary(Report, Width, Out);
  return Out;
}

std::string FixText(const std::vector<TReportedProblem> &Problems, int Width) {
  std::vector<TReportedProblem> Selected;
  std::ranges::copy_if(Problems, std::back_inserter(Selected),
                       [](const TReportedProblem &Problem) { return Problem.Item->Checked; });
  std::string Out;
  PrintProblems(Selected, Width, Out);
  AppendLine(Number(static_cast<std::int32_t>(Selected.size())) + u" of " +
                 Counted(Problems.size(), u"problem", u"problems") + u" to be fixed",
             Width, Out);
  return Out;
}

std::string AreasText(const std::vector<TAreaRow> &Rows, int Width) {
  TTextTable Table({{u"No", TCut::Never, true},
                    {u"Switch", TCut::Never},
                    {u"Caption", TCut::End},
                    {u"Risk", TCut::Never},
                    {u"Scan", TCut::Never}});
  for (const TAreaRow &Row : Rows)
    Table.Add({Number(Row.Area.Number), std::u16string(Row.Area.Switch),
               std::u16string(Row.Area.Caption), std::u16string(RiskName(Row.Area.Risk)),
               Row.IsOn ? u"on" : u"off"});
  std::string Out;
  Table.Print(0, Width, Out);
  return Out;
}

} // namespace hivesweep
