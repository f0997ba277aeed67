#include "platform/memory/RegistryText.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/Text.h"

namespace hivesweep {

namespace {

// Thrown and caught inside this file only: it ends the reading from any depth.
struct TMalformed {
  TTextError Error;
};

constexpr std::u16string_view KnownRoots[] = {
    u"HKEY_CLASSES_ROOT", u"HKEY_CURRENT_USER",   u"HKEY_LOCAL_MACHINE",    u"HKEY_USERS",
    u"HKEY_DYN_DATA",     u"HKEY_CURRENT_CONFIG", u"HKEY_PERFORMANCE_DATA",
};

// Windows makes no deeper keys. The root is the first level.
constexpr std::ptrdiff_t DeepestLevel = 512;

int HexDigit(char16_t Unit) {
  if (Unit >= u'0' && Unit <= u'9')
    return Unit - u'0';
  const char16_t Lower = AsciiLower(Unit);
  return Lower >= u'a' && Lower <= u'f' ? Lower - u'a' + 10 : -1;
}

class TParser {
public:
  TParser(std::u16string_view Text, TRegistryTextReader &Reader) : Text_(Text), Reader_(Reader) {}

  void Run() {
    ReadHeader();
    while (At_ < Text_.size()) {
      SkipBlanks();
      switch (Peek()) {
      case u'[':
        ReadKey();
        break;
      case u'"':
      case u'@':
        ReadValue();
        break;
      default:
        EndLine(u"expected a key in brackets, a value name in quotes or \"@\"");
      }
    }
  }

private:
  // ---- the text as a row of units --------------------------------------------
  char16_t Peek() const { return At_ < Text_.size() ? Text_[At_] : u'\n'; }
  static bool IsLineEnd(char16_t Unit) { return Unit == u'\r' || Unit == u'\n'; }

  // Takes one unit, or a line end of two; counts lines.
  void Take() {
    if (Text_.substr(At_).starts_with(u"\r\n"))
      ++At_;
    if (IsLineEnd(Text_[At_]))
      ++Line_;
    ++At_;
  }

  void SkipBlanks() {
    while (Peek() == u' ' || Peek() == u'\t')
      Take();
  }

  bool TakeWord(std::u16string_view LowerWord) {
    if (AsciiLower(Text_.substr(At_, LowerWord.size())) != LowerWord)
      return false;
    At_ += LowerWord.size();
    return true;
  }

  // The rest of the line, without its end.
  std::u16string_view RestOfLine() const {
    return Text_.substr(At_, std::min(Text_.find_first_of(u"\r\n", At_), Text_.size()) - At_);
  }

  // Nothing but blanks and a comment may be left on the line; goes to the next.
  void EndLine(std::u16string_view Expected) {
    SkipBlanks();
    if (Peek() == u';')
      At_ += RestOfLine().size();
    if (!IsLineEnd(Peek()))
      Fail(Line_, Expected);
    if (At_ < Text_.size())
      Take();
  }

  [[noreturn]] static void Fail(std::size_t AtLine, std::u16string_view Message) {
    throw TMalformed{{AtLine, std::u16string(Message)}};
  }

  // ---- the parts of a text ---------------------------------------------------
  void ReadHeader() {
    const std::u16string_view Header = Trim(RestOfLine());
    OldFormat_ = Header == u"REGEDIT4";
    if (!OldFormat_ && Header != u"Windows Registry Editor Version 5.00")
      Fail(Line_, u"this is no registry text: the first line is neither \"Windows Registry Editor "
                  u"Version 5.00\" nor \"REGEDIT4\"");
    At_ += RestOfLine().size();
    EndLine(u"");
  }

  void ReadKey() {
    const std::u16string_view Rest = RestOfLine();
    const std::size_t Close = Rest.rfind(u']');
    if (Close == std::u16string_view::npos)
      Fail(Line_, u"the closing bracket is missing");
    std::u16string_view Path = Rest.substr(1, Close - 1);
    const bool Delete = Path.starts_with(u'-');
    if (Delete)
      Path.remove_prefix(1);
    if (Path.ends_with(u'\\'))
      Path.remove_suffix(1);
    const std::u16string_view Root = Path.substr(0, Path.find(u'\\'));
    if (std::none_of(std::begin(KnownRoots), std::end(KnownRoots),
                     [&](std::u16string_view Known) { return EqualNoCase(Known, Root); }))
      Fail(Line_, u"the key begins with no known root: \"" + std::u16string(Root) + u"\"");
    if (Path.ends_with(u'\\') || Path.find(u"\\\\") != std::u16string_view::npos)
      Fail(Line_, u"the key has a part without a name");
    if (std::ranges::count(Path, u'\\') >= DeepestLevel)
      Fail(Line_, u"the key is deeper than " + ToDecimal(DeepestLevel) +
                      u" levels, which no registry holds");

    At_ += Close + 1;
    const std::size_t KeyLine = Line_;
    EndLine(u"text after the closing bracket");
    InKey_ = !Delete;
    if (!Delete)
      Reader_.OnKey(Path);
    else if (Path.size() == Root.size())
      Fail(KeyLine, u"a whole root can't be deleted");
    else
      Reader_.OnDeleteKey(Path);
  }

  void ReadValue() {
    if (!InKey_)
      Fail(Line_, u"a value outside a key");
    std::u16string Name;
    if (Peek() == u'@')
      Take();
    else
      Name = ReadQuoted();
    SkipBlanks();
    if (Peek() != u'=')
      Fail(Line_, u"\"=\" is missing after the value's name");
    Take();
    SkipBlanks();

    if (Peek() == u'"') {
      const std::size_t StartLine = Line_;
      std::u16string Data = ReadQuoted();
      Data.push_back(u'\0');
      // A forgotten quote shows only lines later: the place to look is the start.
      if (Line_ != StartLine && !IsLineEnd(Peek()) && Peek() != u';' && Peek() != u' ')
        Fail(StartLine, u"the string is not closed where it should be");
      Reader_.OnValue(Name, TRegType::String, std::as_bytes(std::span(Data)));
    } else if (TakeWord(u"dword:")) {
      const std::uint32_t Number = ReadDword();
      Reader_.OnValue(Name, TRegType::Dword, std::as_bytes(std::span(&Number, 1)));
    } else if (TakeWord(u"hex")) {
      const TRegType Type = ReadHexType();
      ReadHexBytes();
      if (OldFormat_ && (Type == TRegType::String || Type == TRegType::ExpandString ||
                         Type == TRegType::MultiString)) {
        const std::u16string Wide =
            FromAnsi({reinterpret_cast<const char *>(Bytes_.data()), Bytes_.size()});
        Reader_.OnValue(Name, Type, std::as_bytes(std::span(Wide)));
      } else {
        Reader_.OnValue(Name, Type, Bytes_);
      }
    } else if (Peek() == u'-') {
      Take();
      Reader_.OnDeleteValue(Name);
    } else {
      Fail(Line_, u"expected a string in quotes, \"dword:\", \"hex:\", \"hex(type):\" or \"-\"");
    }
    EndLine(u"text after the value");
  }

  // A string in quotes; editors write a backslash or a quote in it behind a
  // backslash, some also line ends and zeros.
  std::u16string ReadQuoted() {
    const std::size_t StartLine = Line_;
    std::u16string Out;
    Take();
    while (At_ < Text_.size() && Text_[At_] != u'"') {
      if (Text_[At_] == u'\\') {
        ++At_;
        switch (Peek()) {
        case u'\\':
        case u'"':
          Out.push_back(Peek());
          break;
        case u'n':
          Out.push_back(u'\n');
          break;
        case u'r':
          Out.push_back(u'\r');
          break;
        case u'0':
          Out.push_back(u'\0');
          break;
        default:
          Fail(Line_, u"a single backslash in a string (it is written twice)");
        }
        ++At_;
        continue;
      }
      const std::size_t From = At_;
      Take();
      Out.append(Text_.substr(From, At_ - From));
    }
    if (At_ == Text_.size())
      Fail(StartLine, u"the string has no closing quote");
    Take();
    return Out;
  }

  std::uint32_t ReadDword() {
    SkipBlanks();
    std::uint32_t Number = 0;
    int Digits = 0;
    for (; HexDigit(Peek()) >= 0; Take(), ++Digits)
      Number = Number << 4 | static_cast<std::uint32_t>(HexDigit(Peek()));
    if (Digits == 0 || Digits > 8)
      Fail(Line_, u"a dword has one to eight hexadecimal digits");
    return Number;
  }

  TRegType ReadHexType() {
    std::uint32_t Number = static_cast<std::uint32_t>(TRegType::Binary);
    if (Peek() == u'(') {
      Take();
      Number = ReadDword();
      if (Peek() != u')')
        Fail(Line_, u"the closing parenthesis of the type is missing");
      Take();
    }
    if (Peek() != u':')
      Fail(Line_, u"\":\" is missing before the bytes");
    Take();
    return static_cast<TRegType>(Number);
  }

  void ReadHexBytes() {
    Bytes_.clear();
    SkipBlanksAndBreaks();
    if (IsLineEnd(Peek()) || Peek() == u';')
      return;
    for (;;) {
      int Number = -1;
      int Digits = 0;
      for (; HexDigit(Peek()) >= 0; Take(), ++Digits)
        Number = std::max(Number, 0) * 16 + HexDigit(Peek());
      if (Digits == 0 || Digits > 2)
        Fail(Line_, u"a byte has one or two hexadecimal digits");
      Bytes_.push_back(static_cast<std::byte>(Number));
      SkipBlanksAndBreaks();
      if (Peek() != u',')
        return;
      Take();
      SkipBlanksAndBreaks();
      // A comma may close the list.
      if (IsLineEnd(Peek()))
        return;
    }
  }

  // A backslash at a line's end carries a list of bytes on to the next line.
  void SkipBlanksAndBreaks() {
    SkipBlanks();
    while (Peek() == u'\\') {
      Take();
      SkipBlanks();
      if (!IsLineEnd(Peek()))
        Fail(Line_, u"a backslash among the bytes that does not end the line");
      if (At_ < Text_.size())
        Take();
      SkipBlanks();
    }
  }

  std::u16string_view Text_;
  TRegistryTextReader &Reader_;
  std::size_t At_ = 0;
  std::size_t Line_ = 1;
  bool OldFormat_ = false;
  bool InKey_ = false;
  std::vector<std::byte> Bytes_; // of the value that is being read
};

} // namespace

std::optional<TTextError> ReadRegistryText(std::string_view Bytes, TRegistryTextReader &Reader) {
  const std::u16string Text =
      Bytes.starts_with("REGEDIT4") ? FromAnsi(Bytes) : DecodeTextFile(Bytes);
  if (EndsInHalfUnit(Bytes))
    return TTextError{std::max<std::size_t>(SplitLines(Text).size(), 1),
                      u"the text is cut: it ends in the middle of a character"};
  try {
    TParser(Text, Reader).Run();
  } catch (const TMalformed &Malformed) {
    return Malformed.Error;
  }
  return std::nullopt;
}

} // namespace hivesweep
