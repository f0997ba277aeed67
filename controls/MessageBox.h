// A short message over a form, with the buttons that answer it.
#pragma once

#include <string>

namespace hivesweep {

class TForm;

enum class TMessageKind {
  Information, // OK
  Warning,     // OK
  Question,    // Yes and No
};

// Waits for the answer. True for OK and Yes. Above may be null.
bool ShowMessage(const TForm *Above, const std::u16string &Text, const std::u16string &Title,
                 TMessageKind Kind);

} // namespace hivesweep
