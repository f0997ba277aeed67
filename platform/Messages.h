// The message family of the seam.
#pragma once

#include <cstdint>

namespace hivesweep {

// A window's handle; 0 is none.
using TWindowHandle = std::uintptr_t;

class TMessages {
public:
  TMessages() = default;
  TMessages(const TMessages &) = delete;
  TMessages &operator=(const TMessages &) = delete;
  virtual ~TMessages() = default;

  // Handles the messages that wait, so that windows draw and buttons act. Called once per
  // examined entry, so it may leave them waiting for some hundredths of a second: then it
  // costs next to nothing.
  virtual void Pump() = 0;

  // The same, at once.
  virtual void PumpAll() { Pump(); }

  // Puts a message into the window's queue and returns at once. Nothing happens
  // for a window that is not there.
  virtual void Post(TWindowHandle Window, std::uint32_t Message, std::uintptr_t WParam,
                    std::intptr_t LParam) = 0;
};

} // namespace hivesweep
