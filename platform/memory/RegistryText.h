// Reads the text form of a registry, as registry editors export and import it.
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>

#include "platform/Registry.h"
#include "platform/memory/TextError.h"

namespace hivesweep {

// Is told what stands in a text, in its order.
class TRegistryTextReader {
public:
  TRegistryTextReader() = default;
  TRegistryTextReader(const TRegistryTextReader &) = delete;
  TRegistryTextReader &operator=(const TRegistryTextReader &) = delete;
  virtual ~TRegistryTextReader() = default;

  // "[key]": the values that follow belong to it. The path begins with a root's
  // name and has no backslash at its end.
  virtual void OnKey(std::u16string_view KeyPath) = 0;
  virtual void OnDeleteKey(std::u16string_view KeyPath) = 0;
  virtual void OnValue(std::u16string_view Name, TRegType Type,
                       std::span<const std::byte> Bytes) = 0;
  virtual void OnDeleteValue(std::u16string_view Name) = 0;
};

// Reads a file of version 5 (UTF-16 or UTF-8; without a mark and not UTF-8, the
// code page) or REGEDIT4 (the code page). Strings may go on over several lines.
// Stops at the first malformed line; what stood before it has been told by then.
std::optional<TTextError> ReadRegistryText(std::string_view Bytes, TRegistryTextReader &Reader);

} // namespace hivesweep
