// Text as the core keeps it: UTF-16 code units, exactly as Windows stores them.
// Positions and lengths everywhere count these units.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

// ---- letter case: ASCII only -------------------------------------------------
// The rules that look for a word inside a text fold A to Z and nothing else, so
// folding never changes a text's length and never depends on a locale.

constexpr char16_t AsciiLower(char16_t Unit) {
  return Unit >= u'A' && Unit <= u'Z' ? static_cast<char16_t>(Unit + 32) : Unit;
}
constexpr char16_t AsciiUpper(char16_t Unit) {
  return Unit >= u'a' && Unit <= u'z' ? static_cast<char16_t>(Unit - 32) : Unit;
}
std::u16string AsciiLower(std::u16string_view Text);

// Where LowerNeedle (already lower case) first stands in Text, ignoring ASCII
// case; npos when it does not, or when the needle is empty.
std::size_t FindNoAsciiCase(std::u16string_view Text, std::u16string_view LowerNeedle,
                            std::size_t From = 0);

// Replaces every occurrence of LowerNeedle, found as above, from left to right;
// what was put in is not searched again.
void ReplaceAllNoAsciiCase(std::u16string &Text, std::u16string_view LowerNeedle,
                           std::u16string_view By);

// ---- letter case: as the system compares names --------------------------------
// Registry and file names are equal when their upper-case forms are, unit by
// unit, by the simple mapping of the Basic Multilingual Plane that Windows uses.

char16_t UpperCase(char16_t Unit);
std::u16string UpperCase(std::u16string_view Text);
bool EqualNoCase(std::u16string_view Left, std::u16string_view Right);

// Orders names as the registry enumerates keys.
struct TNameLess {
  using is_transparent = void;
  bool operator()(std::u16string_view Left, std::u16string_view Right) const;
};

// ---- small helpers --------------------------------------------------------------

// Takes every unit up to the blank (U+0020) off both ends.
std::u16string_view Trim(std::u16string_view Text);

// The text up to its first zero unit.
std::u16string_view UpToZero(std::u16string_view Text);

void RemoveAll(std::u16string &Text, std::u16string_view Needle);

bool Contains(std::u16string_view Text, char16_t Unit);

std::u16string ToDecimal(std::uint64_t Number);
std::u16string ToSignedDecimal(std::int64_t Number);

// The text, but for blanks at its ends, as a decimal number; nothing when it is none. One
// that is too large for the type becomes the largest or smallest of it.
std::optional<std::int64_t> WholeNumber(std::u16string_view Text);

// ---- other encodings --------------------------------------------------------------

// An unpaired surrogate has no UTF-8 form and becomes U+FFFD.
std::string ToUtf8(std::u16string_view Text);

// Bytes that are not UTF-8 become U+FFFD, one for each byte.
std::u16string FromUtf8(std::string_view Bytes);

// Nothing when the bytes are not well-formed UTF-8.
std::optional<std::u16string> FromStrictUtf8(std::string_view Bytes);

// The bytes in the code page of the system that runs the program; on a system
// without one, Windows-1252. Never fails: a byte without a character becomes
// what the system makes of it.
std::u16string FromAnsi(std::string_view Bytes);

// The text in that code page. What has no byte there is replaced as the system does
// it, by a similar letter or "?".
std::string ToAnsi(std::u16string_view Text);

// A text file's bytes by their mark: UTF-16 (either order) or UTF-8 with a mark;
// without one, UTF-8 when they are well-formed UTF-8, else the code page.
std::u16string DecodeTextFile(std::string_view Bytes);

// A UTF-16 text with a mark whose last unit is not whole: the file was cut.
bool EndsInHalfUnit(std::string_view Bytes);

// The lines of a text, ended by CR, LF or CR LF; a last line without an end
// counts, the emptiness after a last line end does not.
std::vector<std::u16string_view> SplitLines(std::u16string_view Text);

} // namespace hivesweep
