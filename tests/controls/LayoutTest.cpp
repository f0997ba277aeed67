// The rules by which controls make room for each other along one axis.
#include <gtest/gtest.h>

#include "controls/Layout.h"

namespace hivesweep {
namespace {

constexpr int Gap = 6;

// In a parent of 200: {position, size, needed, low, high}.
struct TCase {
  const char *Why;
  std::vector<TLayoutItem> Items;
  int Least;
  int Actual;
  const char *Placed; // the position and size of each
};

TLayoutItem Item(int Position, int Size, int Needed = 0, bool High = false, bool Low = true) {
  return {Position, Size, Needed, Low, High, 0, 10};
}
TLayoutItem Below(TLayoutItem Item) {
  Item.CrossPosition = 20;
  return Item;
}

TEST(Layout, GivesWayToWhatNeedsMoreRoom) {
  constexpr bool High = true, NotLow = false;
  const TCase Cases[] = {
      {"all fits: the design", {Item(10, 50), Item(70, 50)}, 200, 200, "10+50 70+50"},
      {"free space is used first", {Item(10, 50, 70), Item(100, 50)}, 200, 200, "10+70 100+50"},
      {"then the neighbour moves", {Item(10, 50, 100), Item(70, 50)}, 200, 200, "10+100 116+50"},
      {"closer than the gap by design", {Item(10, 50, 60), Item(62, 50)}, 200, 200, "10+60 72+50"},
      {"a chain is pushed on, and the parent grows",
       {Item(10, 50, 150), Item(66, 60), Item(132, 60)},
       10 + 150 + 6 + 60 + 6 + 60 + 6,
       300,
       "10+150 166+60 232+60"},
      {"another line stays", {Item(10, 50, 100), Below(Item(70, 50))}, 200, 200, "10+100 70+50"},
      {"what hangs on the far edge grows towards the near one",
       {Item(100, 40, 60, High, NotLow), Item(150, 40, 50, High, NotLow)},
       200,
       260,
       "134+60 200+50"},
      {"both edges meet: the parent grows",
       {Item(10, 80, 120), Item(110, 80, 90, High, NotLow)},
       10 + 120 + 6 + 90 + 10,
       300,
       "10+120 200+90"},
      {"on both edges: it takes the growth", {Item(10, 180, 0, High)}, 200, 260, "10+240"},
      {"a pushed one that stretches keeps its size: the parent grows",
       {Item(10, 20, 40), Item(36, 154, 0, High)},
       220,
       220,
       "10+40 56+154"},
      {"less than the least is taken for the least", {Item(10, 50, 300)}, 316, 50, "10+300"},
  };
  for (const TCase &C : Cases) {
    EXPECT_EQ(LeastParentSize(C.Items, 200, Gap), C.Least) << C.Why;
    const auto Placed = PlaceItems(C.Items, 200, Gap, C.Actual);
    std::string Shown;
    for (const auto &Item : Placed)
      Shown += (Shown.empty() ? "" : " ") + std::to_string(Item.Position) + "+" +
               std::to_string(Item.Size);
    EXPECT_EQ(Shown, C.Placed) << C.Why;
  }
}

} // namespace
} // namespace hivesweep
