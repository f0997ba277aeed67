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

// Ends the command. The message, in UTF-8, goes to standard error.
class TFailure : public std::runtime_error {
public:
  TFailure(TExitCode ExitCode, const std::string &Message)
      : std::runtime_error(Message), Code(ExitCode) {}

  const TExitCode Code;
};

// The failure in English and UTF-8, for a message.
std::string WordsOf(const TError &Error);

// The message names the wrong word and what was expected.
class TWrongUse : public TFailure {
public:
  explicit TWrongUse(const std::string &Message) : TFailure(TExitCode::WrongUse, Message) {}
};

} // namespace hivesweep
