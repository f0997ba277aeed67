#include "platform/Text.h"

#include <algorithm>
#include <limits>
#include <numeric>

#include "platform/UpperCaseTable.h"

namespace hivesweep {

namespace {

constexpr char32_t Replacement = 0xFFFD;

bool IsHighSurrogate(char32_t Unit) { return Unit >= 0xD800 && Unit < 0xDC00; }
bool IsLowSurrogate(char32_t Unit) { return Unit >= 0xDC00 && Unit < 0xE000; }

void AppendUtf8(std::string &Out, char32_t Code) {
  const auto Tail = [&](int Shift) {
    Out.push_back(static_cast<char>(0x80 | ((Code >> Shift) & 0x3F)));
  };
  if (Code < 0x80) {
    Out.push_back(static_cast<char>(Code));
  } else if (Code < 0x800) {
    Out.push_back(static_cast<char>(0xC0 | (Code >> 6)));
    Tail(0);
  } else if (Code < 0x10000) {
    Out.push_back(static_cast<char>(0xE0 | (Code >> 12)));
    Tail(6);
    Tail(0);
  } else {
    Out.push_back(static_cast<char>(0xF0 | (Code >> 18)));
    Tail(12);
    Tail(6);
    Tail(0);
  }
}

void AppendUtf16(std::u16string &Out, char32_t Code) {
  if (Code < 0x10000) {
    Out.push_back(static_cast<char16_t>(Code));
    return;
  }
  Out.push_back(static_cast<char16_t>(0xD800 + ((Code - 0x10000) >> 10)));
  Out.push_back(static_cast<char16_t>(0xDC00 + ((Code - 0x10000) & 0x3FF)));
}

// The number of bytes of the well-formed sequence at the front of Bytes, and what
// it stands for; 0 when there is none.
std::size_t TakeUtf8(std::string_view Bytes, char32_t &Code) {
  const auto Byte = [&](std::size_t Index) {
    return static_cast<char32_t>(static_cast<unsigned char>(Bytes[Index]));
  };
  const char32_t First = Byte(0);
  if (First < 0x80) {
    Code = First;
    return 1;
  }
  const std::size_t Length = First >= 0xC2 && First < 0xE0   ? 2
                             : First >= 0xE0 && First < 0xF0 ? 3
                             : First >= 0xF0 && First < 0xF5 ? 4
                                                             : 0;
  if (Length == 0 || Bytes.size() < Length)
    return 0;
  Code = First & (0x7Fu >> Length);
  for (std::size_t Index = 1; Index < Length; ++Index) {
    if ((Byte(Index) & 0xC0) != 0x80)
      return 0;
    Code = (Code << 6) | (Byte(Index) & 0x3F);
  }
  const bool TooLong = (Length == 3 && Code < 0x800) || (Length == 4 && Code < 0x10000);
  const bool NoCharacter = Code > 0x10FFFF || (Code >= 0xD800 && Code < 0xE000);
  return TooLong || NoCharacter ? 0 : Length;
}

std::u16string FromUtf16Bytes(std::string_view Bytes, bool HighByteFirst) {
  std::u16string Out(Bytes.size() / 2, u'\0');
  for (std::size_t Index = 0; Index < Out.size(); ++Index) {
    const auto Front = static_cast<unsigned char>(Bytes[2 * Index]);
    const auto Back = static_cast<unsigned char>(Bytes[2 * Index + 1]);
    Out[Index] = static_cast<char16_t>(HighByteFirst ? Front << 8 | Back : Back << 8 | Front);
  }
  return Out;
}

} // namespace

std::u16string AsciiLower(std::u16string_view Text) {
  std::u16string Out(Text);
  for (char16_t &Unit : Out)
    Unit = AsciiLower(Unit);
  return Out;
}

std::size_t FindNoAsciiCase(std::u16string_view Text, std::u16string_view LowerNeedle,
                            std::size_t From) {
  if (LowerNeedle.empty() || From > Text.size())
    return std::u16string_view::npos;
  const auto Found = std::search(
      Text.begin() + static_cast<std::ptrdiff_t>(From), Text.end(), LowerNeedle.begin(),
      LowerNeedle.end(), [](char16_t Left, char16_t Right) { return AsciiLower(Left) == Right; });
  return Found == Text.end() ? std::u16string_view::npos
                             : static_cast<std::size_t>(Found - Text.begin());
}

void ReplaceAllNoAsciiCase(std::u16string &Text, std::u16string_view LowerNeedle,
                           std::u16string_view By) {
  std::size_t At = FindNoAsciiCase(Text, LowerNeedle);
  if (At == std::u16string_view::npos)
    return;
  // Into a new text: where one byte in three is replaced, moving the rest each time would
  // take minutes.
  const std::u16string_view Old = Text;
  std::u16string Out;
  std::size_t Taken = 0;
  for (; At != std::u16string_view::npos; At = FindNoAsciiCase(Old, LowerNeedle, Taken)) {
    Out.append(Old.substr(Taken, At - Taken)).append(By);
    Taken = At + LowerNeedle.size();
  }
  Text = Out.append(Old.substr(Taken));
}

char16_t UpperCase(char16_t Unit) {
  // 128 KiB, unfolded from the rows at first use: one look per unit from then on.
  static const std::vector<char16_t> Table = [] {
    std::vector<char16_t> Units(0x10000);
    std::iota(Units.begin(), Units.end(), u'\0');
    for (const TUpperCaseRow &Row : UpperCaseRows)
      for (std::int32_t From = Row.First; From <= Row.Last; From += Row.Step)
        Units[static_cast<std::size_t>(From)] = static_cast<char16_t>(From + Row.Add);
    return Units;
  }();
  return Unit < 0x80 ? AsciiUpper(Unit) : Table[Unit];
}

std::u16string UpperCase(std::u16string_view Text) {
  std::u16string Out(Text);
  for (char16_t &Unit : Out)
    Unit = UpperCase(Unit);
  return Out;
}

bool EqualNoCase(std::u16string_view Left, std::u16string_view Right) {
  return std::equal(Left.begin(), Left.end(), Right.begin(), Right.end(),
                    [](char16_t A, char16_t B) { return A == B || UpperCase(A) == UpperCase(B); });
}

bool TNameLess::operator()(std::u16string_view Left, std::u16string_view Right) const {
  // Names that are compared mostly share a long beginning, in the same letters.
  const auto [A, B] =
      std::mismatch(Left.begin(), Left.end(), Right.begin(), Right.end(),
                    [](char16_t L, char16_t R) { return L == R || UpperCase(L) == UpperCase(R); });
  return B != Right.end() && (A == Left.end() || UpperCase(*A) < UpperCase(*B));
}

std::u16string_view Trim(std::u16string_view Text) {
  while (!Text.empty() && Text.front() <= u' ')
    Text.remove_prefix(1);
  while (!Text.empty() && Text.back() <= u' ')
    Text.remove_suffix(1);
  return Text;
}

std::u16string_view UpToZero(std::u16string_view Text) { return Text.substr(0, Text.find(u'\0')); }

void RemoveAll(std::u16string &Text, std::u16string_view Needle) {
  // What stays is moved together, unit by unit, over what goes.
  std::size_t Kept = 0;
  for (std::size_t At = 0; At < Text.size();) {
    const std::size_t Found = std::min(Text.find(Needle, At), Text.size());
    std::copy(Text.begin() + static_cast<std::ptrdiff_t>(At),
              Text.begin() + static_cast<std::ptrdiff_t>(Found),
              Text.begin() + static_cast<std::ptrdiff_t>(Kept));
    Kept += Found - At;
    At = Found + Needle.size();
  }
  Text.resize(Kept);
}

bool Contains(std::u16string_view Text, char16_t Unit) {
  return Text.find(Unit) != std::u16string_view::npos;
}

std::u16string ToDecimal(std::uint64_t Number) {
  const std::string Digits = std::to_string(Number);
  return {Digits.begin(), Digits.end()};
}

std::u16string ToSignedDecimal(std::int64_t Number) {
  const std::string Digits = std::to_string(Number);
  return {Digits.begin(), Digits.end()};
}

std::optional<std::int64_t> WholeNumber(std::u16string_view Text) {
  Text = Trim(Text);
  const bool IsNegative = Text.starts_with(u'-');
  if (IsNegative)
    Text.remove_prefix(1);
  if (Text.empty())
    return std::nullopt;
  constexpr std::int64_t Least = std::numeric_limits<std::int64_t>::min();
  std::int64_t Number = 0; // below 0: there is one number more
  for (const char16_t Digit : Text) {
    if (Digit < u'0' || Digit > u'9')
      return std::nullopt;
    const std::int64_t Value = Digit - u'0';
    Number = Number < (Least + Value) / 10 ? Least : Number * 10 - Value;
  }
  if (IsNegative)
    return Number;
  return Number == Least ? std::numeric_limits<std::int64_t>::max() : -Number;
}

std::string ToUtf8(std::u16string_view Text) {
  std::string Out;
  Out.reserve(Text.size());
  for (std::size_t Index = 0; Index < Text.size(); ++Index) {
    char32_t Code = Text[Index];
    if (IsHighSurrogate(Code) && Index + 1 < Text.size() && IsLowSurrogate(Text[Index + 1])) {
      Code = 0x10000 + ((Code - 0xD800) << 10) + (static_cast<char32_t>(Text[Index + 1]) - 0xDC00);
      ++Index;
    } else if (IsHighSurrogate(Code) || IsLowSurrogate(Code)) {
      Code = Replacement;
    }
    AppendUtf8(Out, Code);
  }
  return Out;
}

std::u16string FromUtf8(std::string_view Bytes) {
  std::u16string Out;
  Out.reserve(Bytes.size());
  while (!Bytes.empty()) {
    char32_t Code = Replacement;
    const std::size_t Length = TakeUtf8(Bytes, Code);
    AppendUtf16(Out, Length == 0 ? Replacement : Code);
    Bytes.remove_prefix(std::max<std::size_t>(Length, 1));
  }
  return Out;
}

std::optional<std::u16string> FromStrictUtf8(std::string_view Bytes) {
  std::u16string Out;
  Out.reserve(Bytes.size());
  while (!Bytes.empty()) {
    char32_t Code = 0;
    const std::size_t Length = TakeUtf8(Bytes, Code);
    if (Length == 0)
      return std::nullopt;
    AppendUtf16(Out, Code);
    Bytes.remove_prefix(Length);
  }
  return Out;
}

std::u16string DecodeTextFile(std::string_view Bytes) {
  if (Bytes.starts_with("\xFF\xFE"))
    return FromUtf16Bytes(Bytes.substr(2), false);
  if (Bytes.starts_with("\xFE\xFF"))
    return FromUtf16Bytes(Bytes.substr(2), true);
  if (Bytes.starts_with("\xEF\xBB\xBF"))
    return FromUtf8(Bytes.substr(3));
  if (auto Text = FromStrictUtf8(Bytes))
    return std::move(*Text);
  return FromAnsi(Bytes);
}

bool EndsInHalfUnit(std::string_view Bytes) {
  return (Bytes.starts_with("\xFF\xFE") || Bytes.starts_with("\xFE\xFF")) && Bytes.size() % 2 != 0;
}

std::vector<std::u16string_view> SplitLines(std::u16string_view Text) {
  std::vector<std::u16string_view> Lines;
  while (!Text.empty()) {
    const std::size_t End = std::min(Text.find_first_of(u"\r\n"), Text.size());
    Lines.push_back(Text.substr(0, End));
    Text.remove_prefix(End);
    if (Text.starts_with(u"\r\n"))
      Text.remove_prefix(2);
    else if (!Text.empty())
      Text.remove_prefix(1);
  }
  return Lines;
}

} // namespace hivesweep
