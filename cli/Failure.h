// How a run of the command line ends.
#pragma once

#include <stdexcept>
#include <string>

#include "platform/Error.h"

namespace hivesweep {

enum class TExitCode : int {
  Done = 0,
  No = 1, // the answer to a question that the command was
  WrongUse = 2,
  Failed = 3, // something could not be read, written or removed
  Interrupted = 130,
};

// Ends the command. The message, in UTF-8, goes to standard error. It may quote names with
// zeros in them, and what() ends at the first.
class TFailure : public std::runtime_error {
public:
  TFailure(TExitCode ExitCode, const std::string &Text)
      : std::runtime_error(Text), Code(ExitCode), Message(Text) {}

  const TExitCode Code;
  const std::string Message;
};

// The failure in English and UTF-8, for a message.
std::string WordsOf(const TError &Error);

// The message names the wrong word and what was expected.
class TWrongUse : public TFailure {
public:
  explicit TWrongUse(const std::string &Text) : TFailure(TExitCode::WrongUse, Text) {}
};

} // namespace hivesweep
