// The shell family of the seam.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
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

  // The path that a shortcut file names, as it is stored: it may hold variables, and
  // nothing is searched for, asked of a network or shown. Empty when the shortcut has
  // none, as those to control panel items, or when an installer provides it. Nothing
  // when the file can't be read as a shortcut.
  virtual std::optional<std::u16string> ShortcutTarget(std::u16string_view LinkPath) = 0;
};

} // namespace hivesweep
