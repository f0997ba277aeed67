#include "engine/TextSort.h"

#include <algorithm>
#include <tuple>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::size_t UnitsInKey = 4;

// Takes the next few units of a text into its key. Length tells an end from a zero.
void TakeKey(TSortEntry &Entry, std::size_t Depth) {
  const std::u16string_view Part =
      Depth < Entry.Text.size() ? Entry.Text.substr(Depth, UnitsInKey) : std::u16string_view();
  Entry.Key = 0;
  for (std::size_t Index = 0; Index < UnitsInKey; ++Index)
    Entry.Key = Entry.Key << 16 | (Index < Part.size() ? AsciiUpper(Part[Index]) : u'\0');
  Entry.Length = Part.size();
}

auto Order(const TSortEntry &Entry) { return std::tie(Entry.Key, Entry.Length); }

// Of texts that are alike up to Depth.
void SortFrom(std::span<TSortEntry> Entries, std::size_t Depth) {
  for (;; Depth += UnitsInKey) {
    bool Alike = true;
    for (TSortEntry &Entry : Entries) {
      TakeKey(Entry, Depth);
      Alike = Alike && Order(Entry) == Order(Entries.front());
    }
    if (!Alike)
      break;
    if (Entries.front().Length < UnitsInKey) // they have all come to their end
      return;
  }
  std::sort(Entries.begin(), Entries.end(), [](const TSortEntry &Left, const TSortEntry &Right) {
    return Order(Left) < Order(Right);
  });
  for (std::size_t First = 0, End; First < Entries.size(); First = End) {
    for (End = First + 1; End < Entries.size() && Order(Entries[End]) == Order(Entries[First]);)
      ++End;
    if (End - First > 1 && Entries[First].Length == UnitsInKey)
      SortFrom(Entries.subspan(First, End - First), Depth + UnitsInKey);
  }
}

} // namespace

void SortByText(std::span<TSortEntry> Entries) {
  if (Entries.size() > 1)
    SortFrom(Entries, 0);
}

} // namespace hivesweep
