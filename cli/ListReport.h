// A list of plain records, in the forms in which the command line prints lists.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "cli/CliConsole.h"
#include "cli/Options.h"
#include "repair/ListRows.h"

namespace hivesweep {

enum class TCellKind {
  Text,
  Number, // in decimal
  Flag,   // "yes" or "no"; any other word is kept as a text
};

struct TListColumn {
  std::u16string_view Heading; // for people
  std::u16string_view Name;    // in JSON and CSV
  TCellKind Kind = TCellKind::Text;
};

struct TListReport final : public TListRows {
  // Name is that of the list in JSON.
  TListReport(const char *ListName, std::vector<TListColumn> ListColumns)
      : Name(ListName), Columns(std::move(ListColumns)) {}

  void Clear() override { Rows.clear(); }
  void Add(std::u16string_view Caption, std::span<const std::u16string> SubItems) override {
    std::vector<std::u16string> Row = {std::u16string(Caption)};
    Row.insert(Row.end(), SubItems.begin(), SubItems.end());
    Rows.push_back(std::move(Row));
  }

  const char *const Name;
  const std::vector<TListColumn> Columns;
  std::vector<std::vector<std::u16string>> Rows; // a cell for each column
};

// Prints it as the options want it. Throws TFailure.
void WriteList(TCliConsole &Console, const TOptions &Options, const TListReport &List);

constexpr std::u16string_view FlagCell(bool Flag) { return Flag ? u"yes" : u"no"; }

} // namespace hivesweep
