#include "controls/Timer.h"

#include "controls/Form.h"
#include "controls/Win32.h"

namespace hivesweep {

TTimer::TTimer(TForm *Owner, std::u16string Name, int Interval)
    : TComponent(Owner, std::move(Name)), Interval_(Interval) {}

TTimer::~TTimer() { SetEnabled(false); }

void TTimer::SetEnabled(bool Enabled) {
  if (Enabled == Enabled_)
    return;
  Enabled_ = Enabled;
  if (Enabled)
    SetTimer(Owner()->Handle(), Number(), static_cast<UINT>(Interval_), nullptr);
  else
    KillTimer(Owner()->Handle(), Number());
}

TTimer *TTimer::Of(const TForm &Form, std::uintptr_t Number) {
  // Looked up, as a message that waits may name a timer that is gone.
  for (const auto &Component : Form.Components())
    if (auto *Timer = dynamic_cast<TTimer *>(Component.get()))
      if (Timer->Number() == Number && Timer->Enabled())
        return Timer;
  return nullptr;
}

} // namespace hivesweep
