// The shell family of the seam.
#pragma once

#include <cstdint>
#include <memory>
#include <string_view>

namespace hivesweep {

// A program that was started. Destroying this leaves the program alone.
class TProcess {
public:
  TProcess() = default;
  TProcess(const TProcess &) = delete;
  TProcess &operator=(const TProcess &) = delete;
  virtual ~TProcess() = default;

  // Waits so long at most, 0 only asks. True when it has ended by then.
  virtual bool WaitForEnd(std::uint32_t Milliseconds) = 0;
};

class TShell {
public:
  TShell() = default;
  TShell(const TShell &) = delete;
  TShell &operator=(const TShell &) = delete;
  virtual ~TShell() = default;

  // Starts the verb "open" on a program, document or address and does not wait.
  // False when it could not be started.
  virtual bool Open(std::u16string_view Target, std::u16string_view Parameters) = 0;

  // The same, and answers what was started; null when it could not be started. Where
  // the system names no process for it, the answer tells at once that it has ended.
  virtual std::unique_ptr<TProcess> Start(std::u16string_view Target,
                                          std::u16string_view Parameters) = 0;
};

} // namespace hivesweep
