// The system family of the seam: which system the program runs on.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace hivesweep {

class TSystem {
public:
  TSystem() = default;
  TSystem(const TSystem &) = delete;
  TSystem &operator=(const TSystem &) = delete;
  virtual ~TSystem() = default;

  // This is a 32-bit program on a 64-bit system. False when the system can't say.
  virtual bool IsWow64() = 0;

  // A variable of the user's environment, by its name without regard to case.
  virtual std::optional<std::u16string> Environment(std::u16string_view Name) = 0;

  // The name below HKEY_USERS of the key that HKEY_CURRENT_USER shows; empty when the
  // system can't say.
  virtual std::u16string UserKey() = 0;
};

} // namespace hivesweep
