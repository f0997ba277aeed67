#include <gtest/gtest.h>

#include <algorithm>

#include "engine/ExportLines.h"

namespace hivesweep {
namespace {

TEST(ExportLines, HaveTheirForms) {
  EXPECT_EQ(Escaped(u"C:\\a\\\"b\""), u"C:\\\\a\\\\\"b\"");
  EXPECT_EQ(KeyLine(u"HKEY_X\\a\\"), u"[HKEY_X\\a\\]");
  EXPECT_EQ(StringLine(u"n\\\"", u"d"), u"\"n\\\"\"=\"d\"");
  EXPECT_EQ(StringLine(u"", u"d"), u"@=\"d\"");
  EXPECT_EQ(DwordLine(u"n", 26), u"\"n\"=dword:0000001A");
  EXPECT_EQ(DecimalDwordLine(u"n", 26), u"\"n\"=dword:26") << "in decimal, as ever";
  EXPECT_EQ(DecimalDwordLine(u"", 4294967295u), u"@=dword:4294967295");
}

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
