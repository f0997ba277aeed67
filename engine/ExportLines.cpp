#include "engine/ExportLines.h"

#include "platform/Text.h"

namespace hivesweep {

namespace {

std::u16string NamePart(std::u16string_view Name) {
  return Name.empty() ? u"@=" : u"\"" + std::u16string(Name) + u"\"=";
}

void AppendHex(std::u16string &Out, std::uint32_t Number, int Digits) {
  for (int Shift = 4 * (Digits - 1); Shift >= 0; Shift -= 4)
    Out.push_back(u"0123456789ABCDEF"[(Number >> Shift) & 0xF]);
}

} // namespace

std::u16string Escaped(std::u16string_view Text) {
  std::u16string Out;
  Out.reserve(Text.size() + 8);
  for (const char16_t Unit : Text) {
    if (Unit == u'\\')
      Out.push_back(u'\\');
    Out.push_back(Unit);
  }
  return Out;
}

std::u16string KeyLine(std::u16string_view KeyPath) {
  return u"[" + std::u16string(KeyPath) + u"]";
}

std::u16string StringLine(std::u16string_view Name, std::u16string_view Data) {
  return NamePart(Name) + u"\"" + std::u16string(Data) + u"\"";
}

std::u16string DwordLine(std::u16string_view Name, std::uint32_t Number) {
  std::u16string Line = NamePart(Name) + u"dword:";
  AppendHex(Line, Number, 8);
  return Line;
}

std::u16string DecimalDwordLine(std::u16string_view Name, std::uint32_t Number) {
  return NamePart(Name) + u"dword:" + ToDecimal(Number);
}

std::u16string BinaryLine(std::u16string_view Name, std::span<const std::byte> Bytes) {
  constexpr std::size_t BreakAfter = 25;
  std::u16string Line = NamePart(Name) + u"hex:";
  for (std::size_t Index = 0; Index < Bytes.size(); ++Index) {
    const std::byte Element = 2 * Index < Bytes.size() ? Bytes[2 * Index] : std::byte{0};
    AppendHex(Line, std::to_integer<std::uint32_t>(Element), 2);
    if (Index + 1 == Bytes.size())
      break;
    Line.push_back(u',');
    if (Index > 0 && Index % BreakAfter == 0)
      Line += u"\\\r";
  }
  return Line;
}

} // namespace hivesweep
