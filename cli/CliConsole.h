// What the command line writes to and asks of its surroundings while it runs. A
// test stands behind it as well as the system does.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/Console.h"

namespace hivesweep {

// The functions are those of platform/Console.h.
class TCliConsole {
public:
  TCliConsole() = default;
  TCliConsole(const TCliConsole &) = delete;
  TCliConsole &operator=(const TCliConsole &) = delete;
  virtual ~TCliConsole() = default;

  virtual bool Write(TConsoleStream Stream, std::string_view Utf8) = 0;
  virtual bool IsTerminal(TConsoleStream Stream) = 0;
  virtual int Width(TConsoleStream Stream) = 0;
  virtual bool InputIsTerminal() = 0;
  virtual std::optional<std::string> ReadLine() = 0;
  virtual std::optional<std::string> ReadAll(std::size_t Most) = 0;
  virtual void CatchInterrupt() = 0;
  virtual bool WasInterrupted() = 0;
  virtual std::uint64_t Ticks() = 0;
};

// The streams of the running program.
class TSystemConsole final : public TCliConsole {
public:
  bool Write(TConsoleStream Stream, std::string_view Utf8) override;
  bool IsTerminal(TConsoleStream Stream) override;
  int Width(TConsoleStream Stream) override;
  bool InputIsTerminal() override;
  std::optional<std::string> ReadLine() override;
  std::optional<std::string> ReadAll(std::size_t Most) override;
  void CatchInterrupt() override;
  bool WasInterrupted() override;
  std::uint64_t Ticks() override;
};

} // namespace hivesweep
