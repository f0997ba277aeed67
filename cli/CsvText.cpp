#include "cli/CsvText.h"

#include "platform/Text.h"

namespace hivesweep {

namespace {

// The format knows no control characters but line breaks inside quotes, and who
// prints the file on a terminal is glad of that.
std::string Field(std::u16string Text) {
  for (char16_t &Unit : Text)
    if ((Unit < 0x20 && Unit != u'\r' && Unit != u'\n') || (Unit >= 0x7F && Unit < 0xA0))
      Unit = 0xFFFD;
  const bool NeedsQuotes = Text.find_first_of(u",\"\r\n") != std::u16string::npos ||
                           Text.starts_with(u' ') || Text.ends_with(u' ');
  std::string Utf8 = ToUtf8(Text);
  if (!NeedsQuotes)
    return Utf8;
  std::string Out = "\"";
  for (const char Byte : Utf8)
    Out.append(Byte == '"' ? 2 : 1, Byte);
  return Out + "\"";
}

} // namespace

std::string CsvRecord(const std::vector<std::u16string> &Fields) {
  std::string Out;
  for (const std::u16string &Text : Fields) {
    if (&Text != &Fields.front())
      Out.push_back(',');
    Out += Field(Text);
  }
  return Out + "\r\n";
}

} // namespace hivesweep
