// A lock between the threads of one process. Not for locking twice from one thread.
#pragma once

#include <memory>

namespace hivesweep {

class TLock {
public:
  TLock();
  TLock(const TLock &) = delete;
  TLock &operator=(const TLock &) = delete;
  ~TLock();

  void Enter();
  void Leave();

private:
  struct TNative;
  std::unique_ptr<TNative> Native_;
};

// Holds a lock for as long as it lives.
class TLockGuard {
public:
  explicit TLockGuard(TLock &Lock) : Lock_(Lock) { Lock_.Enter(); }
  TLockGuard(const TLockGuard &) = delete;
  TLockGuard &operator=(const TLockGuard &) = delete;
  ~TLockGuard() { Lock_.Leave(); }

private:
  TLock &Lock_;
};

} // namespace hivesweep
