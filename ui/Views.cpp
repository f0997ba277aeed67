#include "ui/Views.h"

namespace hivesweep {

void TPlainRows::Add(std::u16string_view Caption, std::span<const std::u16string> SubItems) {
  TListCells Cells;
  Cells.Texts.emplace_back(Caption);
  Cells.Texts.insert(Cells.Texts.end(), SubItems.begin(), SubItems.end());
  List_.AddRow(std::move(Cells));
}

} // namespace hivesweep
