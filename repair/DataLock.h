#pragma once

#include <functional>
#include <memory>
#include <string>

#include "platform/Platform.h"

namespace hivesweep {

// The data folder for this object alone, among all running programs: two fixes at once would
// remove each other's records.
class TDataLock {
public:
  TDataLock(TPlatform &Platform, std::u16string Path)
      : Platform_(Platform), Path_(std::move(Path)) {}

  // Makes the folder when it is missing. Waits some seconds for another program and handles
  // messages meanwhile, until GiveUp says that nobody waits any more. The answer is
  // DataInUse, or DataInUseBy, when that program still has it.
  TError Take(const std::function<bool()> &GiveUp = [] { return false; });
  void GiveBack() { File_.reset(); }

private:
  TPlatform &Platform_;
  const std::u16string Path_;
  std::unique_ptr<THeldFile> File_;
};

// Gives a lock back in the end of a block, unless it is to be kept.
class TDataLockGuard {
public:
  explicit TDataLockGuard(TDataLock &Lock) : Lock_(&Lock) {}
  TDataLockGuard(const TDataLockGuard &) = delete;
  TDataLockGuard &operator=(const TDataLockGuard &) = delete;
  ~TDataLockGuard() {
    if (Lock_)
      Lock_->GiveBack();
  }
  void Keep() { Lock_ = nullptr; }

private:
  TDataLock *Lock_;
};

} // namespace hivesweep
