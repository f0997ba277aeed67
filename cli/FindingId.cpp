#include "cli/FindingId.h"

#include <string_view>

namespace hivesweep {

namespace {

// FNV-1a: not for keeping anyone out, but nothing else is asked of it here, and its
// numbers will be the same in twenty years.
class THash {
public:
  void Add(std::uint32_t Number) {
    for (int Shift = 0; Shift < 32; Shift += 8)
      AddByte(static_cast<std::uint8_t>(Number >> Shift));
  }

  // The length comes first, so that two texts can't be cut in another place.
  void Add(std::u16string_view Text) {
    Add(static_cast<std::uint32_t>(Text.size()));
    for (const char16_t Unit : Text) {
      AddByte(static_cast<std::uint8_t>(Unit));
      AddByte(static_cast<std::uint8_t>(Unit >> 8));
    }
  }

  std::uint64_t Value() const { return Value_; }

private:
  void AddByte(std::uint8_t Byte) { Value_ = (Value_ ^ Byte) * 0x100000001B3u; }

  std::uint64_t Value_ = 0xCBF29CE484222325u;
};

std::string Hexadecimal(std::uint64_t Number) {
  std::string Out;
  for (int Shift = 60; Shift >= 0; Shift -= 4)
    Out.push_back("0123456789abcdef"[(Number >> Shift) & 15]);
  return Out;
}

} // namespace

std::string TFindingIds::Next(int Area, const TItemInfo &Item) {
  THash Hash;
  Hash.Add(static_cast<std::uint32_t>(Area));
  Hash.Add(Item.KeyPath);
  Hash.Add(Item.ValueName);
  Hash.Add(Item.Data);
  const int Count = ++Seen_[Hash.Value()];
  return Hexadecimal(Hash.Value()) + (Count > 1 ? "-" + std::to_string(Count) : "");
}

} // namespace hivesweep
