// Sorts many texts that begin alike.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace hivesweep {

// What is sorted: a text and what it belongs to. Key and Length are the sort's own.
struct TSortEntry {
  std::u16string_view Text;
  void *Owner = nullptr;
  std::uint64_t Key = 0;
  std::size_t Length = 0;
};

// By character code, ASCII letters without regard to case; equal texts in any order. Paths
// of the registry share long beginnings: each part of one is looked at once, not again
// for every comparison.
void SortByText(std::span<TSortEntry> Entries);

} // namespace hivesweep
