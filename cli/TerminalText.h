// Text as a terminal shows it, one character beside the other.
#pragma once

#include <string>
#include <string_view>

namespace hivesweep {

// The text with a "·" in place of every character that a terminal would act on
// instead of showing it: control characters, marks that turn the direction of
// writing or are invisible. Registry data may hold any of them, on purpose.
std::u16string Presentable(std::u16string_view Text);

// How many columns a presentable text takes: two for an East Asian wide character,
// none for a mark that stands on the character before it.
int DisplayWidth(std::u16string_view Text);

// Presentable text cut to a width of columns, with a "…" for what is missing: at its
// end, or in its middle, where the beginning and twice as much of the end remain.
std::u16string ShortenEnd(std::u16string_view Text, int Width);
std::u16string ShortenMiddle(std::u16string_view Text, int Width);

} // namespace hivesweep
