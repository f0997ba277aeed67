#include "cli/Failure.h"

#include "platform/ErrorTexts.h"
#include "platform/Text.h"

namespace hivesweep {

std::string WordsOf(const TError &Error) { return ToUtf8(EnglishWords(Error)); }

} // namespace hivesweep
