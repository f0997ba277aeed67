#include "cli/ListReport.h"

#include "cli/CsvText.h"
#include "cli/JsonText.h"
#include "cli/Output.h"
#include "cli/TextTable.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

TJson JsonCell(const std::u16string &Cell, TCellKind Kind) {
  switch (Kind) {
  case TCellKind::Number:
    return TJson::parse(ToUtf8(Cell));
  case TCellKind::Flag:
    if (Cell == FlagCell(true) || Cell == FlagCell(false))
      return Cell == FlagCell(true);
    break;
  case TCellKind::Text:
    break;
  }
  return ToUtf8(Cell);
}

std::string JsonList(const TListReport &List) {
  const auto Fields = [&](const std::vector<std::u16string> &Row) {
    TJson Out = TJson::object();
    for (std::size_t Index = 0; Index < List.Columns.size(); ++Index)
      Out[ToUtf8(List.Columns[Index].Name)] = JsonCell(Row[Index], List.Columns[Index].Kind);
    return Out;
  };
  std::string Out = "{";
  AddJsonArray(List.Name, List.Rows, Fields, Out);
  return Out + "}\n";
}

std::string CsvList(const TListReport &List) {
  std::vector<std::u16string> Names;
  for (const TListColumn &Column : List.Columns)
    Names.emplace_back(Column.Name);
  std::string Out = CsvRecord(Names);
  for (const std::vector<std::u16string> &Row : List.Rows)
    Out += CsvRecord(Row);
  return Out;
}

std::string TextList(const TListReport &List, int Width) {
  std::vector<TTextColumn> Columns;
  for (const TListColumn &Column : List.Columns)
    Columns.push_back({Column.Heading, TCut::Middle, Column.Kind == TCellKind::Number});
  TTextTable Table(std::move(Columns));
  for (const std::vector<std::u16string> &Row : List.Rows)
    Table.Add(Row);
  std::string Out;
  Table.Print(0, Width, Out);
  return Out;
}

} // namespace

void WriteList(TCliConsole &Console, const TOptions &Options, const TListReport &List) {
  const std::string Text = Options.Format == TFormat::Json ? JsonList(List)
                           : Options.Format == TFormat::Csv
                               ? CsvList(List)
                               : TextList(List, WidthOfResult(Console, Options.OutputFile));
  WriteResult(Console, Options.OutputFile, Text);
}

} // namespace hivesweep
