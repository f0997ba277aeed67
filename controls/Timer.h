// Tells its handler again and again that an interval has passed.
#pragma once

#include <cstdint>

#include "controls/Component.h"

namespace hivesweep {

class TTimer : public TComponent {
public:
  // Interval in milliseconds.
  TTimer(TForm *Owner, std::u16string Name, int Interval);
  ~TTimer() override;

  bool Enabled() const { return Enabled_; }
  void SetEnabled(bool Enabled);

  bool Knows(TEvent Event) const override { return Event == TEvent::Timer; }

  // The form's timer of that number among the system's; null: none.
  static TTimer *Of(const TForm &Form, std::uintptr_t Number);

private:
  std::uintptr_t Number() const { return reinterpret_cast<std::uintptr_t>(this); }

  int Interval_;
  bool Enabled_ = false;
};

} // namespace hivesweep
