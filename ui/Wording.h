// What went wrong below the window, in the user's language.
#pragma once

#include <string>

#include "repair/RegistryClean.h"
#include "ui/Language.h"

namespace hivesweep {

// Why a problem was not removed: a sentence.
std::u16string Worded(const TLanguage &Language, const TNotRemoved &Problem);

// Why something was not put back: a sentence.
std::u16string Worded(const TLanguage &Language, const TPutFailure &Failure);

} // namespace hivesweep
