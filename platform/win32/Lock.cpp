#include "platform/Lock.h"

#include "platform/win32/Win32.h"

namespace hivesweep {

struct TLock::TNative {
  CRITICAL_SECTION Section = {};

  TNative() { InitializeCriticalSection(&Section); }
  TNative(const TNative &) = delete;
  TNative &operator=(const TNative &) = delete;
  ~TNative() { DeleteCriticalSection(&Section); }
};

TLock::TLock() : Native_(std::make_unique<TNative>()) {}
TLock::~TLock() = default;

void TLock::Enter() { EnterCriticalSection(&Native_->Section); }
void TLock::Leave() { LeaveCriticalSection(&Native_->Section); }

} // namespace hivesweep
