// Places and sizes. A form's table gives them in units of 1/96 inch, everything
// else counts pixels.
#pragma once

namespace hivesweep {

struct TPoint {
  int X = 0;
  int Y = 0;
};

struct TSize {
  int Width = 0;
  int Height = 0;
  bool operator==(const TSize &) const = default;
};

struct TRect {
  int Left = 0;
  int Top = 0;
  int Width = 0;
  int Height = 0;

  int Right() const { return Left + Width; }
  int Bottom() const { return Top + Height; }
  bool Contains(TPoint Point) const {
    return Point.X >= Left && Point.X < Right() && Point.Y >= Top && Point.Y < Bottom();
  }
  // Less a border of that width on all four sides.
  TRect Inner(int Border) const {
    return {Left + Border, Top + Border, Width - 2 * Border, Height - 2 * Border};
  }
  bool operator==(const TRect &) const = default;
};

// To which sides of its parent a control keeps its distance. Both sides of an axis:
// it grows with the parent.
struct TAnchors {
  bool Left = true;
  bool Top = true;
  bool Right = false;
  bool Bottom = false;
};

// The sides by which most controls hold on to their parent.
namespace Edges {
inline constexpr TAnchors Across{.Right = true}; // at the top
inline constexpr TAnchors All{.Right = true, .Bottom = true};
inline constexpr TAnchors Left{.Bottom = true};
inline constexpr TAnchors Right{.Left = false, .Right = true};
inline constexpr TAnchors Bottom{.Top = false, .Right = true, .Bottom = true};
inline constexpr TAnchors BottomLeft{.Top = false, .Bottom = true};
inline constexpr TAnchors BottomRight{.Left = false, .Top = false, .Right = true, .Bottom = true};
} // namespace Edges

} // namespace hivesweep
