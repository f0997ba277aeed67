#include "cli/TextTable.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <utility>

#include "cli/TerminalText.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

// Beyond it, a column is not made wider for one long cell's sake.
constexpr int WidestUnlimited = 70;

// Narrower tables have one blank between columns instead of two.
constexpr int NarrowTable = 60;

constexpr std::u16string_view Between = u" = ";

std::vector<std::u16string> PresentableAll(const std::vector<std::u16string> &Texts) {
  std::vector<std::u16string> Out;
  Out.reserve(Texts.size());
  std::transform(Texts.begin(), Texts.end(), std::back_inserter(Out),
                 [](const std::u16string &Text) { return Presentable(Text); });
  return Out;
}

// Takes room from the widest until all fit together; the narrow ones keep theirs.
void Shrink(std::vector<int> &Widths, const std::vector<bool> &MayShrink, int Room) {
  int Excess = std::accumulate(Widths.begin(), Widths.end(), 0) - Room;
  for (int Cap = *std::max_element(Widths.begin(), Widths.end()) - 1; Excess > 0 && Cap > 0;
       --Cap) {
    for (std::size_t Index = Widths.size(); Index-- > 0 && Excess > 0;) {
      if (MayShrink[Index] && Widths[Index] > Cap) {
        Widths[Index] = Cap;
        --Excess;
      }
    }
  }
}

void Pad(std::u16string &Line, int Count) {
  Line.append(static_cast<std::size_t>(std::max(Count, 0)), u' ');
}

std::u16string JoinedParts(const std::vector<std::u16string> &Parts, int Room) {
  std::vector<int> Widths;
  for (const std::u16string &Part : Parts) {
    const int Whole = DisplayWidth(Part);
    Widths.push_back(Room > 0 ? std::min(Whole, Room) : Whole);
  }
  const int Joints = static_cast<int>(Between.size() * (Parts.size() - 1));
  if (Room > 0)
    Shrink(Widths, std::vector<bool>(Parts.size(), true), Room - Joints);
  std::u16string Out;
  for (std::size_t Index = 0; Index < Parts.size(); ++Index)
    Out.append(Index == 0 ? u"" : Between).append(ShortenMiddle(Parts[Index], Widths[Index]));
  return Out;
}

} // namespace

void AppendLine(std::u16string Line, int Width, std::string &Out) {
  Line.erase(Line.find_last_not_of(u' ') + 1);
  Out.append(ToUtf8(Width > 0 ? ShortenEnd(Line, Width) : Line)).push_back('\n');
}

void TTextTable::Add(const std::vector<std::u16string> &Cells) {
  Lines_.push_back({false, PresentableAll(Cells)});
}

void TTextTable::AddBelow(const std::vector<std::u16string> &Parts) {
  Lines_.push_back({true, PresentableAll(Parts)});
}

std::vector<int> TTextTable::ColumnWidths(int Gap, int Room) const {
  const int Widest = Room > 0 ? Room : WidestUnlimited;
  std::vector<int> Widths;
  for (std::size_t Index = 0; Index < Columns_.size(); ++Index) {
    int Width = DisplayWidth(Columns_[Index].Heading);
    for (const TLine &Line : Lines_)
      if (!Line.IsBelow)
        Width = std::max(Width, DisplayWidth(Line.Cells[Index]));
    Widths.push_back(std::min(Width, Widest));
  }
  if (Room > 0) {
    std::vector<bool> MayShrink;
    for (const TTextColumn &Column : Columns_)
      MayShrink.push_back(Column.Cut != TCut::Never);
    Shrink(Widths, MayShrink, Room - Gap * static_cast<int>(Columns_.size() - 1));
  }
  return Widths;
}

void TTextTable::Print(int Indent, int Width, std::string &Out) const {
  const int Gap = Width > 0 && Width < NarrowTable ? 1 : 2;
  const int Room = Width > 0 ? std::max(Width - Indent, 1) : 0;
  const std::vector<int> Widths = ColumnWidths(Gap, Room);

  const auto PrintCells = [&](const auto &CellAt) {
    std::u16string Line;
    Pad(Line, Indent);
    for (std::size_t Index = 0; Index < Columns_.size(); ++Index) {
      const std::u16string_view Cell = CellAt(Index);
      const std::u16string Text = Room == 0 ? std::u16string(Cell)
                                  : Columns_[Index].Cut == TCut::Middle
                                      ? ShortenMiddle(Cell, Widths[Index])
                                      : ShortenEnd(Cell, Widths[Index]);
      const int Blank = Widths[Index] - DisplayWidth(Text);
      Pad(Line, (Index == 0 ? 0 : Gap) + (Columns_[Index].Right ? Blank : 0));
      Line += Text;
      if (!Columns_[Index].Right)
        Pad(Line, Blank);
    }
    AppendLine(std::move(Line), Width, Out);
  };

  if (std::any_of(Columns_.begin(), Columns_.end(),
                  [](const TTextColumn &Column) { return !Column.Heading.empty(); }))
    PrintCells([&](std::size_t Index) { return Columns_[Index].Heading; });
  for (const TLine &Line : Lines_) {
    if (!Line.IsBelow) {
      PrintCells([&](std::size_t Index) { return std::u16string_view(Line.Cells[Index]); });
      continue;
    }
    // Under the second column, whose row it belongs to.
    const int Inner = Indent + Widths[0] + Gap;
    std::u16string Text;
    Pad(Text, Inner);
    Text += JoinedParts(Line.Cells, Room > 0 ? std::max(Width - Inner, 1) : 0);
    AppendLine(std::move(Text), Width, Out);
  }
}

} // namespace hivesweep
