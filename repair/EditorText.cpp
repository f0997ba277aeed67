#include "repair/EditorText.h"

#include <algorithm>
#include <cstring>
#include <optional>
#include <utility>

namespace hivesweep {

namespace {

constexpr std::u16string_view Blanks = u" \t";

std::u16string_view WithoutBlanks(std::u16string_view Text) {
  const std::size_t First = Text.find_first_not_of(Blanks);
  return First == std::u16string_view::npos ? std::u16string_view() : Text.substr(First);
}

// Some program may take one of these units for the end of a line or of the file.
bool HasBreak(std::u16string_view Text) {
  return std::ranges::any_of(Text, [](char16_t Unit) {
    return (Unit < u' ' && Unit != u'\t') || Unit == u'\x85' || Unit == u'\x2028' ||
           Unit == u'\x2029';
  });
}

bool IsHexDigit(char16_t Unit) {
  const char16_t Lower = AsciiLower(Unit);
  return (Unit >= u'0' && Unit <= u'9') || (Lower >= u'a' && Lower <= u'f');
}

std::uint32_t HexNumber(std::u16string_view Digits) {
  std::uint32_t Number = 0;
  for (const char16_t Unit : Digits)
    Number = Number * 16 +
             static_cast<std::uint32_t>(Unit <= u'9' ? Unit - u'0' : AsciiLower(Unit) - u'a' + 10);
  return Number;
}

// Editors know the names in any letter case, and some the short ones as well. Other roots
// have nothing that a scan would ever list.
std::optional<TRegRoot> RootOf(std::u16string_view Name) {
  static const std::pair<std::u16string_view, TRegRoot> Short[] = {
      {u"HKCR", TRegRoot::ClassesRoot},
      {u"HKCU", TRegRoot::CurrentUser},
      {u"HKLM", TRegRoot::LocalMachine},
      {u"HKU", TRegRoot::Users}};
  for (const auto &[Text, Root] : Short)
    if (EqualNoCase(Name, Text) || EqualNoCase(Name, RegRootName(Root)))
      return Root;
  return std::nullopt;
}

// A line that an editor joins with others, or cuts in two, could show it a key or a
// deletion that stands in the middle here.
bool HidesStatement(std::u16string_view Line) {
  for (std::size_t At = 0; At < Line.size(); ++At) {
    const std::u16string_view Rest = WithoutBlanks(Line.substr(At + 1));
    if ((Line[At] == u'"' || Line[At] == u'@') && Rest.starts_with(u'=') &&
        WithoutBlanks(Rest.substr(1)).starts_with(u'-'))
      return true;
    if (Line[At] == u'[' && At > 0) {
      const std::size_t Name = Rest.find_first_not_of(u" \t-\"");
      if (Name != std::u16string_view::npos && EqualNoCase(Rest.substr(Name, 2), u"HK"))
        return true;
    }
  }
  return false;
}

// A text in quotes, read from behind the first one.
struct TQuoted {
  std::u16string Text;
  std::u16string_view Rest; // behind the closing quote
  bool IsClosed = false;
};

// Editors differ in what a backslash before a letter means: a control character to those
// that know Letters, the letter itself to others.
TQuoted Unquote(std::u16string_view Line, bool Letters) {
  TQuoted Out;
  for (std::size_t At = 0; At < Line.size(); ++At) {
    char16_t Unit = Line[At];
    if (Unit == u'"') {
      Out.Rest = Line.substr(At + 1);
      Out.IsClosed = true;
      break;
    }
    if (Unit == u'\\') {
      if (++At == Line.size())
        break;
      Unit = Line[At];
      if (Letters && (Unit == u'n' || Unit == u'r' || Unit == u'0'))
        Unit = Unit == u'n' ? u'\n' : Unit == u'r' ? u'\r' : u'\0';
    }
    Out.Text.push_back(Unit);
  }
  return Out;
}

bool EndsLine(std::u16string_view Rest) {
  Rest = WithoutBlanks(Rest);
  return Rest.empty() || Rest.starts_with(u';');
}

class TEditorReader {
public:
  TEditorText Run(std::string_view Bytes) {
    const bool IsWide = Bytes.starts_with("\xFF\xFE");
    if (IsWide && Bytes.size() % 2 != 0)
      Doubt();
    if (IsWide) {
      std::u16string Text(Bytes.size() / 2 - 1, u'\0');
      std::memcpy(Text.data(), Bytes.data() + 2, 2 * Text.size());
      for (const std::u16string_view Line : SplitLines(Text))
        Take(Line);
    } else {
      // The bytes are split first: the last byte of a line and the line end could be read as
      // one character of a code page with two bytes to some.
      for (std::size_t At = 0; At < Bytes.size();) {
        const std::size_t End = std::min(Bytes.find_first_of("\r\n", At), Bytes.size());
        Take(FromAnsi(Bytes.substr(At, End - At)));
        At = End + (Bytes.substr(End).starts_with("\r\n") ? 2 : 1);
      }
    }
    EndHexList();
    if (Line_ == 0)
      Doubt();
    return std::move(Out_);
  }

private:
  void Doubt() {
    if (Out_.DoubtfulLine == 0)
      Out_.DoubtfulLine = std::max<std::size_t>(Line_, 1);
  }

  void Take(std::u16string_view Whole) {
    ++Line_;
    const std::u16string_view Line = WithoutBlanks(Whole);
    if (HasBreak(Line)) {
      Doubt();
    } else if (Line_ == 1) {
      if (Whole != u"Windows Registry Editor Version 5.00" && Whole != u"REGEDIT4")
        Doubt();
    } else if (!IsHexListOpen_ || !TakeHexList(Line)) {
      EndHexList();
      if (HidesStatement(Line))
        Doubt();
      if (Line.starts_with(u'['))
        TakeKey(Line);
      else if (Line.starts_with(u'"') || Line.starts_with(u'@'))
        TakeValue(Line);
      else if (!EndsLine(Line))
        Doubt();
    }
  }

  // A key's name may hold brackets. Some editors end it at the last of them, some perhaps
  // at the first.
  void TakeKey(std::u16string_view Line) {
    Keys_.clear();
    const std::size_t Close = Line.rfind(u']');
    if (Close == std::u16string_view::npos || !EndsLine(Line.substr(Close + 1))) {
      Doubt();
      return;
    }
    for (std::size_t End = Line.find(u']'); End <= Close; End = Line.find(u']', End + 1))
      AddKey(Line.substr(1, End - 1));
  }

  void AddKey(std::u16string_view Key) {
    const std::size_t Break = Key.find(u'\\');
    const std::optional<TRegRoot> Root = RootOf(Key.substr(0, Break));
    std::u16string_view Path =
        Break == std::u16string_view::npos ? std::u16string_view() : Key.substr(Break + 1);
    while (Path.ends_with(u'\\'))
      Path.remove_suffix(1);
    // Not every editor keeps a blank at the end.
    if (!Root || Path.empty() || Blanks.find(Path.back()) != std::u16string_view::npos ||
        !IsNewKeyPath(Path)) {
      Doubt();
      return;
    }
    for (TKeyPlace &Place : StoredPlaces(*Root, Path)) {
      Out_.Scope.Keys.insert(Place);
      Keys_.push_back(std::move(Place));
    }
  }

  void TakeValue(std::u16string_view Line) {
    if (Keys_.empty())
      Doubt();
    Names_.clear();
    std::u16string_view Data;
    for (const bool Letters : {true, false}) {
      TQuoted Name = Line.starts_with(u'@') ? TQuoted{{}, Line.substr(1), true}
                                            : Unquote(Line.substr(1), Letters);
      Data = WithoutBlanks(Name.Rest);
      if (!Name.IsClosed || !Data.starts_with(u'='))
        return; // no value to an editor that keeps to its line
      if (Names_.empty() || Names_.back() != Name.Text)
        Names_.push_back(std::move(Name.Text));
    }
    Data = WithoutBlanks(Data.substr(1));
    const std::u16string Kind = AsciiLower(Data.substr(0, 6));
    if (Kind.starts_with(u'"')) {
      const TQuoted First = Unquote(Data.substr(1), true);
      TakeText(First, true);
      if (TQuoted Second = Unquote(Data.substr(1), false); Second.Text != First.Text)
        TakeText(std::move(Second), false);
    } else if (Kind == u"dword:") {
      TakeDword(WithoutBlanks(Data.substr(6)));
    } else if (Kind.starts_with(u"hex:")) {
      Hex_.clear();
      TakeHexList(Data.substr(4));
    }
  }

  void TakeText(TQuoted Text, bool IsFirst) {
    if (!Text.IsClosed || !EndsLine(Text.Rest))
      return;
    Text.Text.push_back(u'\0');
    Add(TRegType::String, std::as_bytes(std::span(Text.Text)), IsFirst);
  }

  void TakeDword(std::u16string_view Digits) {
    const auto End = std::ranges::find_if_not(Digits, IsHexDigit);
    const auto Count = static_cast<std::size_t>(End - Digits.begin());
    if (Count == 0 || Count > 8 || !EndsLine(Digits.substr(Count)))
      return;
    const std::uint32_t Number = HexNumber(Digits.substr(0, Count));
    Add(TRegType::Dword, std::as_bytes(std::span(&Number, 1)));
  }

  // One line of a list of bytes; the list stays open behind a backslash at its end. False
  // when the line is something else.
  bool TakeHexList(std::u16string_view Line) {
    const std::size_t Backslashes = static_cast<std::size_t>(std::ranges::count(Line, u'\\'));
    if (Line.find_first_not_of(u"0123456789abcdefABCDEF,\\ \t") != std::u16string_view::npos ||
        Backslashes > (Line.ends_with(u'\\') ? 1 : 0))
      return false;
    for (std::size_t At = 0; At < Line.size();) {
      const std::size_t End = std::min(Line.find_first_of(u",\\ \t", At), Line.size());
      if (End > At)
        Hex_.push_back(static_cast<std::byte>(HexNumber(Line.substr(At, End - At))));
      At = End + 1;
    }
    IsHexListOpen_ = true;
    if (Backslashes == 0)
      EndHexList();
    return true;
  }

  void EndHexList() {
    if (!std::exchange(IsHexListOpen_, false))
      return;
    Add(TRegType::Binary, Hex_);
  }

  void Add(TRegType Type, std::span<const std::byte> Bytes, bool IsFirst = true) {
    for (const TKeyPlace &Key : Keys_)
      for (const std::u16string &Name : Names_)
        Out_.Values.push_back({Key,
                               Name,
                               {Type, {Bytes.begin(), Bytes.end()}, 0},
                               Line_,
                               IsFirst && &Name == Names_.data()});
  }

  TEditorText Out_;
  std::size_t Line_ = 0;
  std::vector<TKeyPlace> Keys_;       // where the values go that follow
  std::vector<std::u16string> Names_; // of the value that is being read
  std::vector<std::byte> Hex_;        // its list of bytes
  bool IsHexListOpen_ = false;        // the list may go on in the next line
};

} // namespace

TEditorText ReadAsEditor(std::string_view Bytes) { return TEditorReader().Run(Bytes); }

} // namespace hivesweep
