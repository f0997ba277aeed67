#include <gtest/gtest.h>

#include <algorithm>

#include "engine/ExportLines.h"

namespace hivesweep {
namespace {

std::u16string Bytes(std::size_t Count) {
  std::vector<std::byte> Data(Count);
  for (std::size_t Index = 0; Index < Count; ++Index)
    Data[Index] = static_cast<std::byte>(Index);
  return BinaryLine(u"n", Data);
}

TEST(ExportLines, AByteListTakesEverySecondByteAndBreaksAfter25) {
  EXPECT_EQ(Bytes(0), u"\"n\"=hex:");
  EXPECT_EQ(Bytes(1), u"\"n\"=hex:00");
  EXPECT_EQ(Bytes(5), u"\"n\"=hex:00,02,04,00,00");
  // 26 elements stand on the first line, 25 on each later one; no break follows the
  // last element.
  static const struct {
    std::size_t Count;
    std::vector<std::size_t> Commas; // of each physical line
  } Cases[] = {{26, {25}}, {27, {26, 0}}, {30, {26, 3}}, {51, {26, 24}}, {52, {26, 25, 0}}};
  for (const auto &C : Cases) {
    std::u16string Line = Bytes(C.Count);
    EXPECT_EQ(Line.find(u'\n'), std::u16string::npos);
    std::vector<std::size_t> Commas;
    for (std::size_t End; (End = Line.find(u'\r')) != std::u16string::npos;) {
      EXPECT_EQ(Line[End - 1], u'\\');
      EXPECT_EQ(Line[End - 2], u',');
      Commas.push_back(static_cast<std::size_t>(
          std::count(Line.begin(), Line.begin() + static_cast<std::ptrdiff_t>(End), u',')));
      Line.erase(0, End + 1);
    }
    Commas.push_back(static_cast<std::size_t>(std::count(Line.begin(), Line.end(), u',')));
    EXPECT_EQ(Commas, C.Commas) << C.Count;
  }
}

} // namespace
} // namespace hivesweep
