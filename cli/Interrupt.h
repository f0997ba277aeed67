#pragma once

#include <functional>

#include "cli/CliConsole.h"
#include "platform/Messages.h"

namespace hivesweep {

// The messages of a program without windows: the one thing that can happen while it works
// is Ctrl+C.
class TInterruptMessages final : public TMessages {
public:
  explicit TInterruptMessages(TCliConsole &Console) : Console_(Console) {}

  void Pump() override {
    if (OnInterrupt && Console_.WasInterrupted())
      OnInterrupt();
  }
  void Post(TWindowHandle, std::uint32_t, std::uintptr_t, std::intptr_t) override {}

  std::function<void()> OnInterrupt; // called at every pump from then on

private:
  TCliConsole &Console_;
};

} // namespace hivesweep
