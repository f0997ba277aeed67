// A table for people: columns under each other, shortened until they fit.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

// Appends one line of presentable text in UTF-8, cut to the width when there is one.
void AppendLine(std::u16string Line, int Width, std::string &Out);

// Where a text is cut when the line is too long.
enum class TCut { Never, End, Middle };

struct TTextColumn {
  std::u16string_view Heading; // a table without any headings has no heading line
  TCut Cut = TCut::Middle;
  bool Right = false; // aligned there
};

class TTextTable {
public:
  explicit TTextTable(std::vector<TTextColumn> Columns) : Columns_(std::move(Columns)) {}

  // Texts of any kind; they are made presentable. As many cells as there are columns.
  void Add(const std::vector<std::u16string> &Cells);

  // A line of its own below the last row, for what has no place in a column: the
  // parts with " = " between them.
  void AddBelow(const std::vector<std::u16string> &Parts);

  // Appends the table in UTF-8, each line indented. No line is wider than Width,
  // which may be 0 for no limit: then nothing is shortened, and a cell that is much
  // longer than usual pushes its row out of line.
  void Print(int Indent, int Width, std::string &Out) const;

private:
  struct TLine {
    bool IsBelow = false;
    std::vector<std::u16string> Cells;
  };

  std::vector<int> ColumnWidths(int Gap, int Room) const;

  std::vector<TTextColumn> Columns_;
  std::vector<TLine> Lines_;
};

} // namespace hivesweep
