// How controls make place for each other along one axis. A table says where each
// control stands while its text fits; one that needs more pushes its neighbours away,
// first into the free space, then making the parent larger.
#pragma once

#include <vector>

namespace hivesweep {

// One control along the axis, in pixels of the design; positions count from the
// parent's low edge.
struct TLayoutItem {
  int Position = 0;
  int Size = 0;
  int Needed = 0; // at least this size; 0 and everything up to Size: it fits
  bool Low = true;
  bool High = false; // which edges of the parent it keeps its distance to
  // Its extent along the other axis: only controls that share some of it can collide.
  int CrossPosition = 0;
  int CrossSize = 0;
};

struct TLayoutSpan {
  int Position = 0;
  int Size = 0;
};

// The least size of the parent in which every control has the size that it needs and
// none covers another that it did not cover in the design. Design: the parent's size
// there, which is never undercut. Gap: the least distance between neighbours that
// stand farther apart in the design.
int LeastParentSize(const std::vector<TLayoutItem> &Items, int Design, int Gap);

// Where the controls stand in a parent of the size Actual, which is at least the
// least one (a smaller one is taken for it).
std::vector<TLayoutSpan> PlaceItems(const std::vector<TLayoutItem> &Items, int Design, int Gap,
                                    int Actual);

} // namespace hivesweep
