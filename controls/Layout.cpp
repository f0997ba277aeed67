#include "controls/Layout.h"

#include <algorithm>
#include <numeric>

namespace hivesweep {

namespace {

bool Collide(const TLayoutItem &Left, const TLayoutItem &Right) {
  return Left.CrossPosition < Right.CrossPosition + Right.CrossSize &&
         Right.CrossPosition < Left.CrossPosition + Left.CrossSize;
}

int Growth(const TLayoutItem &Item) { return std::max(0, Item.Needed - Item.Size); }

// The edge that stays: a control that keeps its distance to the high edge alone grows
// towards the low one.
bool HangsHigh(const TLayoutItem &Item) { return Item.High && !Item.Low; }

// The same controls, seen from the high edge.
TLayoutItem Mirrored(TLayoutItem Item, int Design) {
  Item.Position = Design - Item.Position - Item.Size;
  std::swap(Item.Low, Item.High);
  return Item;
}

// How far each control is pushed away from the low edge by those before it. Only
// controls that hang on the low edge push and are pushed.
std::vector<int> Pushes(const std::vector<TLayoutItem> &Items, int Gap) {
  std::vector<std::size_t> Order(Items.size());
  std::iota(Order.begin(), Order.end(), std::size_t{0});
  std::stable_sort(Order.begin(), Order.end(), [&](std::size_t A, std::size_t B) {
    return Items[A].Position < Items[B].Position;
  });
  std::vector<int> Push(Items.size(), 0);
  for (std::size_t I = 0; I < Order.size(); ++I) {
    const TLayoutItem &Item = Items[Order[I]];
    if (HangsHigh(Item))
      continue;
    for (std::size_t J = 0; J < I; ++J) {
      const TLayoutItem &Before = Items[Order[J]];
      const int Free = Item.Position - (Before.Position + Before.Size);
      if (Free < 0 || HangsHigh(Before) || !Collide(Before, Item))
        continue;
      const int Moved = Push[Order[J]] + Growth(Before);
      const int Slack = std::max(0, Free - Gap);
      Push[Order[I]] = std::max(Push[Order[I]], Moved - Slack);
    }
  }
  return Push;
}

struct TPushes {
  std::vector<int> FromLow;
  std::vector<int> FromHigh;
};

TPushes BothPushes(const std::vector<TLayoutItem> &Items, int Design, int Gap) {
  std::vector<TLayoutItem> Seen;
  Seen.reserve(Items.size());
  for (const TLayoutItem &Item : Items)
    Seen.push_back(Mirrored(Item, Design));
  // Those that stretch are pushed from the low side already.
  for (TLayoutItem &Item : Seen)
    if (Item.Low && Item.High)
      Item.Needed = 0;
  return {Pushes(Items, Gap), Pushes(Seen, Gap)};
}

} // namespace

int LeastParentSize(const std::vector<TLayoutItem> &Items, int Design, int Gap) {
  const TPushes Push = BothPushes(Items, Design, Gap);
  int Least = Design;
  for (std::size_t I = 0; I < Items.size(); ++I) {
    const TLayoutItem &Item = Items[I];
    const int Before = Item.Position, After = Design - Item.Position - Item.Size;
    const int Size = std::max(Item.Size, Item.Needed);
    if (HangsHigh(Item)) {
      const int Used = After + Push.FromHigh[I] + Size;
      Least = std::max(Least, Used + std::min(Before, Gap));
      for (std::size_t J = 0; J < Items.size(); ++J) {
        const TLayoutItem &Other = Items[J];
        const int Free = Item.Position - (Other.Position + Other.Size);
        if (HangsHigh(Other) || Free < 0 || !Collide(Other, Item))
          continue;
        const int OtherEnd = Other.Position + Push.FromLow[J] + std::max(Other.Size, Other.Needed);
        // One that stretches ends at a distance to the high edge by itself.
        const int Ends = Other.High ? OtherEnd + Free : OtherEnd + std::min(Free, Gap);
        Least = std::max(Least, Ends + Used);
      }
    } else if (Item.High) {
      Least = std::max(Least, Before + Push.FromLow[I] + Size + After + Push.FromHigh[I]);
    } else {
      Least = std::max(Least, Before + Push.FromLow[I] + Size + std::min(After, Gap));
    }
  }
  return Least;
}

std::vector<TLayoutSpan> PlaceItems(const std::vector<TLayoutItem> &Items, int Design, int Gap,
                                    int Actual) {
  const TPushes Push = BothPushes(Items, Design, Gap);
  Actual = std::max(Actual, LeastParentSize(Items, Design, Gap));
  std::vector<TLayoutSpan> Spans;
  Spans.reserve(Items.size());
  for (std::size_t I = 0; I < Items.size(); ++I) {
    const TLayoutItem &Item = Items[I];
    const int Low = Item.Position + Push.FromLow[I];
    const int High = Actual - (Design - Item.Position - Item.Size) - Push.FromHigh[I];
    const int Size = std::max(Item.Size, Item.Needed);
    if (HangsHigh(Item))
      Spans.push_back({High - Size, Size});
    else if (Item.High)
      Spans.push_back({Low, High - Low});
    else
      Spans.push_back({Low, Size});
  }
  return Spans;
}

} // namespace hivesweep
