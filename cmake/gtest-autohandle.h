// Forced into the compilation of gtest-all.cc in Windows builds. GoogleTest
// declares this class among its locks, which are switched off there (no
// std::mutex), but its Windows death tests use it all the same.
#pragma once

#include <windows.h>

namespace testing::internal {

// Owns a kernel handle; closes it.
class AutoHandle {
public:
  AutoHandle() = default;
  explicit AutoHandle(HANDLE Handle) : Owned(Handle) {}
  AutoHandle(const AutoHandle &) = delete;
  AutoHandle &operator=(const AutoHandle &) = delete;
  ~AutoHandle() { Reset(); }

  HANDLE Get() const { return Owned; }

  void Reset(HANDLE Handle = INVALID_HANDLE_VALUE) {
    if (Owned != INVALID_HANDLE_VALUE && Owned != nullptr)
      CloseHandle(Owned);
    Owned = Handle;
  }

private:
  HANDLE Owned = INVALID_HANDLE_VALUE;
};

} // namespace testing::internal
