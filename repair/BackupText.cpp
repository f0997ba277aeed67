#include "repair/BackupText.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view Header = u"Windows Registry Editor Version 5.00\r\n";
constexpr std::u16string_view LineEnd = u"\r\n";

std::u16string Digits(int Number, std::size_t Count) {
  std::u16string Text = ToDecimal(static_cast<std::uint64_t>(Number));
  return Text.size() < Count ? std::u16string(Count - Text.size(), u'0') + Text : Text;
}

// A line without the breaks that BinaryLine puts between bytes; what stands before the
// bytes may look like such a break and is kept.
std::u16string_view WithoutByteList(std::u16string_view Line) {
  constexpr std::u16string_view Start = u"=hex:";
  const std::size_t At = Line.rfind(Start);
  if (At == std::u16string_view::npos)
    return Line;
  std::u16string Bytes(Line.substr(At + Start.size()));
  RemoveAll(Bytes, u",\\\r");
  return Bytes.find_first_not_of(u"0123456789ABCDEF,") == std::u16string::npos ? Line.substr(0, At)
                                                                               : Line;
}

// Some reader may take it for more than one line. A character can also become a line end
// when it is put into the code page.
bool HasControlCharacter(std::u16string_view Line) {
  const auto IsControl = [](char16_t Unit) {
    return Unit < u' ' || (Unit >= u'\x7F' && Unit <= u'\x9F') || Unit == u'\x2028' ||
           Unit == u'\x2029';
  };
  return std::ranges::any_of(Line, IsControl) ||
         std::ranges::any_of(ToAnsi(Line), [](char Byte) { return Byte >= 0 && Byte < ' '; });
}

} // namespace

std::string EncodeBackup(std::span<const std::u16string> Lines) {
  // The header brings a line end of its own, and is a line of the list as well.
  std::u16string Text(Header);
  Text += LineEnd;
  bool IsKeyLeftOut = false;
  for (const std::u16string &Line : Lines) {
    const bool IsKey = Line.starts_with(u'[');
    const bool IsLeftOut = HasControlCharacter(WithoutByteList(Line));
    if (IsKey)
      IsKeyLeftOut = IsLeftOut;
    if (!IsLeftOut && !IsKeyLeftOut)
      Text.append(Line).append(LineEnd);
  }
  return ToAnsi(Text);
}

std::u16string BackupNameOf(const TLocalTime &Time) {
  std::u16string Name = u"backup" + Digits(Time.Year, 4);
  for (const int Part : {Time.Month, Time.Day, Time.Hour, Time.Minute, Time.Second})
    Name += Digits(Part, 2);
  return Name + u".reg";
}

std::u16string DateTimeText(const TLocalTime &Time) {
  return Digits(Time.Month, 2) + u"/" + Digits(Time.Day, 2) + u"/" + Digits(Time.Year, 4) + u" " +
         Digits(Time.Hour, 2) + u":" + Digits(Time.Minute, 2) + u":" + Digits(Time.Second, 2);
}

std::vector<std::u16string> DecodeBackup(std::string_view Bytes) {
  // One with a mark is not of this program's making, but the editor reads it as well.
  const bool HasMark = Bytes.starts_with("\xFF\xFE");
  const std::u16string Text = HasMark ? DecodeTextFile(Bytes) : FromAnsi(Bytes);
  std::vector<std::u16string> Lines;
  for (const std::u16string_view Line : SplitLines(Text))
    Lines.emplace_back(Line);
  return Lines;
}

} // namespace hivesweep
