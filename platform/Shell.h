// The shell family of the seam.
#pragma once

#include <string_view>

namespace hivesweep {

class TShell {
public:
  TShell() = default;
  TShell(const TShell &) = delete;
  TShell &operator=(const TShell &) = delete;
  virtual ~TShell() = default;

  // Starts the verb "open" on a program, document or address and does not wait.
  // False when it could not be started.
  virtual bool Open(std::u16string_view Target, std::u16string_view Parameters) = 0;
};

} // namespace hivesweep
