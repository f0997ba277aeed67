#include "repair/BackupText.h"

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view Header = u"Windows Registry Editor Version 5.00\r\n";
constexpr std::u16string_view LineEnd = u"\r\n";

std::u16string Digits(int Number, std::size_t Count) {
  std::u16string Text = ToDecimal(static_cast<std::uint64_t>(Number));
  return Text.size() < Count ? std::u16string(Count - Text.size(), u'0') + Text : Text;
}

} // namespace

std::string EncodeBackup(std::span<const std::u16string> Lines) {
  // The header brings a line end of its own, and is a line of the list as well.
  std::u16string Text(Header);
  Text += LineEnd;
  for (const std::u16string &Line : Lines)
    Text.append(Line).append(LineEnd);
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

std::optional<TKeyPlace> KeyOfLine(std::u16string_view Line) {
  if (!Line.starts_with(u'[') || !Line.ends_with(u']'))
    return std::nullopt;
  Line = Line.substr(1, Line.size() - 2);
  const std::size_t Break = Line.find(u'\\');
  const std::optional<TRegRoot> Root = RegRootByName(Line.substr(0, Break));
  if (!Root || Break == std::u16string_view::npos)
    return std::nullopt;
  std::u16string_view Path = Line.substr(Break + 1);
  while (Path.ends_with(u'\\'))
    Path.remove_suffix(1);
  if (Path.empty())
    return std::nullopt;
  return TKeyPlace{*Root, std::u16string(Path)};
}

std::optional<std::u16string_view>
NameOfLine(std::u16string_view Line, const std::function<bool(std::u16string_view Name)> &Exists) {
  if (Line.starts_with(u"@="))
    return Exists(u"") ? std::optional(std::u16string_view()) : std::nullopt;
  if (!Line.starts_with(u'"'))
    return std::nullopt;
  for (std::size_t End = Line.find(u"\"=", 1); End != std::u16string_view::npos;
       End = Line.find(u"\"=", End + 1))
    if (const std::u16string_view Name = Line.substr(1, End - 1); Exists(Name))
      return Name;
  return std::nullopt;
}

TScope ScopeOfBackup(std::span<const std::u16string> Lines) {
  TScope Scope;
  for (const std::u16string &Line : Lines)
    if (const auto Key = KeyOfLine(Line))
      for (TKeyPlace &Place : StoredPlaces(Key->Root, Key->Path))
        Scope.Keys.insert(std::move(Place));
  return Scope;
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
