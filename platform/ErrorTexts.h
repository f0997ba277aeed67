// The words for each failure.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>

#include "platform/Error.h"

namespace hivesweep {

struct TErrorText {
  TErrorCode Code;
  std::u16string_view Key;     // in language files
  std::u16string_view English; // "%s" is the subject, "%d" the number
};

// One row for each code that has words of its own.
std::span<const TErrorText> ErrorTexts();

// The failure as a sentence, with its causes behind colons. TextOf answers a row's text, and
// SystemTextOf the words for an error number of the system, in the language that is wanted.
std::u16string ErrorWords(const TError &Error,
                          const std::function<std::u16string(const TErrorText &Text)> &TextOf,
                          const std::function<std::u16string(std::uint32_t Number)> &SystemTextOf);

std::u16string EnglishWords(const TError &Error);

} // namespace hivesweep
