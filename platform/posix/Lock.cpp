#include "platform/Lock.h"

#include <mutex>

namespace hivesweep {

struct TLock::TNative {
  std::mutex Mutex;
};

TLock::TLock() : Native_(std::make_unique<TNative>()) {}
TLock::~TLock() = default;

void TLock::Enter() { Native_->Mutex.lock(); }
void TLock::Leave() { Native_->Mutex.unlock(); }

} // namespace hivesweep
