#include "platform/Text.h"

#include <algorithm>
#include <iterator>

namespace hivesweep {

namespace {

// 0x80 to 0x9F of Windows-1252. Five of them stand for nothing; Windows makes the
// control characters of the same number of them.
constexpr char16_t HighControls[] = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178,
};

// The byte of a character; nothing when it has none.
std::optional<char> ByteOf(char16_t Unit) {
  const auto *const Found = std::find(std::begin(HighControls), std::end(HighControls), Unit);
  if (Found != std::end(HighControls))
    return static_cast<char>(0x80 + (Found - std::begin(HighControls)));
  if (Unit < 0x80 || (Unit >= 0xA0 && Unit < 0x100))
    return static_cast<char>(Unit);
  return std::nullopt;
}

} // namespace

std::u16string FromAnsi(std::string_view Bytes) {
  std::u16string Out;
  Out.reserve(Bytes.size());
  for (const char Byte : Bytes) {
    const auto Code = static_cast<unsigned char>(Byte);
    Out.push_back(Code >= 0x80 && Code < 0xA0 ? HighControls[Code - 0x80] : Code);
  }
  return Out;
}

std::string ToAnsi(std::u16string_view Text) {
  std::string Out;
  Out.reserve(Text.size());
  for (const char16_t Unit : Text)
    Out.push_back(ByteOf(Unit).value_or('?'));
  return Out;
}

} // namespace hivesweep
