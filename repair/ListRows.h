#pragma once

#include <span>
#include <string>
#include <string_view>

namespace hivesweep {

// The rows of a table that the user sees: a list view, or the output of a command.
class TListRows {
public:
  TListRows() = default;
  TListRows(const TListRows &) = delete;
  TListRows &operator=(const TListRows &) = delete;
  virtual ~TListRows() = default;

  virtual void Clear() = 0;
  virtual void Add(std::u16string_view Caption, std::span<const std::u16string> SubItems) = 0;
};

} // namespace hivesweep
