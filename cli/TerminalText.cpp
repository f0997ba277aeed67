#include "cli/TerminalText.h"

#include <algorithm>
#include <iterator>

namespace hivesweep {

namespace {

struct TRange {
  char32_t First;
  char32_t Last;
};

// Sorted. All that is unassigned around them is taken along, to keep them short.
constexpr TRange Unshowable[] = {
    {0x0000, 0x001F},   {0x007F, 0x009F},   {0x00AD, 0x00AD},    {0x061C, 0x061C},
    {0x115F, 0x1160},   {0x17B4, 0x17B5},   {0x180B, 0x180F},    {0x200B, 0x200F},
    {0x2028, 0x202E},   {0x2060, 0x206F},   {0x3164, 0x3164},    {0xFEFF, 0xFEFF},
    {0xFFA0, 0xFFA0},   {0xFFF0, 0xFFFB},   {0xFFFE, 0xFFFF},    {0x1BCA0, 0x1BCA3},
    {0x1D173, 0x1D17A}, {0x1FFFE, 0x1FFFF}, {0xE0000, 0x10FFFF},
};
constexpr TRange Combining[] = {
    {0x0300, 0x036F}, {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x05BF, 0x05BF}, {0x05C1, 0x05C2},
    {0x05C4, 0x05C5}, {0x0610, 0x061A}, {0x064B, 0x065F}, {0x0670, 0x0670}, {0x06D6, 0x06DC},
    {0x0900, 0x0902}, {0x093C, 0x093C}, {0x0941, 0x0948}, {0x094D, 0x094D}, {0x0E31, 0x0E31},
    {0x0E34, 0x0E3A}, {0x0E47, 0x0E4E}, {0x1AB0, 0x1AFF}, {0x1DC0, 0x1DFF}, {0x20D0, 0x20F0},
    {0x302A, 0x302D}, {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F},
};
constexpr TRange Wide[] = {
    {0x1100, 0x115F},   {0x2E80, 0x303E},   {0x3041, 0xA4CF},   {0xA960, 0xA97F},
    {0xAC00, 0xD7A3},   {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF00, 0xFF60},
    {0xFFE0, 0xFFE6},   {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF},
    {0x20000, 0x3FFFD},
};

template <std::size_t Count> bool IsIn(const TRange (&Ranges)[Count], char32_t Character) {
  const auto *const Found =
      std::lower_bound(std::begin(Ranges), std::end(Ranges), Character,
                       [](const TRange &Range, char32_t Wanted) { return Range.Last < Wanted; });
  return Found != std::end(Ranges) && Found->First <= Character;
}

// One character of a text, with the units it takes.
struct TCharacter {
  char32_t Code;
  std::size_t Length;
};

TCharacter CharacterAt(std::u16string_view Text, std::size_t Position) {
  const char16_t Unit = Text[Position];
  if ((Unit & 0xF800) != 0xD800)
    return {Unit, 1};
  if (Unit < 0xDC00 && Position + 1 < Text.size() && (Text[Position + 1] & 0xFC00) == 0xDC00)
    return {0x10000 + ((Unit & 0x3FFu) << 10) + (Text[Position + 1] & 0x3FFu), 2};
  return {0xFFFD, 1};
}

int WidthOf(char32_t Character) {
  if (Character < 0x300)
    return 1;
  return IsIn(Combining, Character) ? 0 : IsIn(Wide, Character) ? 2 : 1;
}

// The units at the front that fit into the width, marks on their last character included.
std::size_t FrontOf(std::u16string_view Text, int Width) {
  std::size_t Position = 0;
  while (Position < Text.size()) {
    const TCharacter Next = CharacterAt(Text, Position);
    Width -= WidthOf(Next.Code);
    if (Width < 0)
      break;
    Position += Next.Length;
  }
  return Position;
}

} // namespace

std::u16string Presentable(std::u16string_view Text) {
  std::u16string Out;
  Out.reserve(Text.size());
  for (std::size_t Position = 0; Position < Text.size();) {
    const TCharacter Next = CharacterAt(Text, Position);
    if (IsIn(Unshowable, Next.Code))
      Out.push_back(u'·');
    else if (Next.Length == 1)
      Out.push_back(static_cast<char16_t>(Next.Code));
    else
      Out.append(Text.substr(Position, 2));
    Position += Next.Length;
  }
  return Out;
}

int DisplayWidth(std::u16string_view Text) {
  int Width = 0;
  for (std::size_t Position = 0; Position < Text.size();) {
    const TCharacter Next = CharacterAt(Text, Position);
    Width += WidthOf(Next.Code);
    Position += Next.Length;
  }
  return Width;
}

std::u16string ShortenEnd(std::u16string_view Text, int Width) {
  if (DisplayWidth(Text) <= Width)
    return std::u16string(Text);
  if (Width <= 0)
    return {};
  return std::u16string(Text.substr(0, FrontOf(Text, Width - 1))) + u"…";
}

std::u16string ShortenMiddle(std::u16string_view Text, int Width) {
  const int Whole = DisplayWidth(Text);
  if (Whole <= Width)
    return std::u16string(Text);
  if (Width <= 0)
    return {};
  const int Front = (Width - 1) / 3;
  const int Back = Width - 1 - Front;
  std::size_t Cut = FrontOf(Text, Whole - Back);
  // A wide character on the border belongs to neither side.
  while (DisplayWidth(Text.substr(Cut)) > Back)
    Cut += CharacterAt(Text, Cut).Length;
  return std::u16string(Text.substr(0, FrontOf(Text, Front))).append(u"…").append(Text.substr(Cut));
}

} // namespace hivesweep
