#include "controls/FormLayout.h"

#include <algorithm>
#include <map>

#include "controls/Layout.h"
#include "controls/WindowControl.h"

namespace hivesweep {

namespace {

constexpr int GapUnits = 6;

using TSpans = std::map<const TControl *, TLayoutSpan>;

const TWindowControl *AsParent(const TControl &Control) {
  const auto *Parent = dynamic_cast<const TWindowControl *>(&Control);
  return Parent && !Parent->Children().empty() ? Parent : nullptr;
}

std::vector<TControl *> Shown(const TWindowControl &Parent) {
  std::vector<TControl *> Controls;
  for (TControl *Child : Parent.Children())
    if (Child->Visible())
      Controls.push_back(Child);
  return Controls;
}

// ---- one axis, chosen by its functions -----------------------------------------------

class TPass {
public:
  TPass(const TLook &Look) : Look_(Look) {}

  int LeastWidth(const TWindowControl &Parent, int Design) const {
    return LeastParentSize(WidthItems(Parent), Design, Look_.Scale(GapUnits));
  }
  int LeastHeight(const TWindowControl &Parent, int Design) const {
    return LeastParentSize(HeightItems(Parent), Design, Look_.Scale(GapUnits));
  }

  void PlaceWidths(const TWindowControl &Parent, int Design, int Actual) {
    const auto Controls = Shown(Parent);
    const auto Placed = PlaceItems(WidthItems(Parent), Design, Look_.Scale(GapUnits), Actual);
    for (std::size_t I = 0; I < Controls.size(); ++I) {
      Widths_[Controls[I]] = Placed[I];
      if (const TWindowControl *Inner = AsParent(*Controls[I]))
        PlaceWidths(*Inner, Scaled(*Controls[I]).Width, Placed[I].Size);
    }
  }

  // After PlaceWidths.
  void PlaceHeights(TWindowControl &Parent, int Design, int Actual) const {
    const auto Controls = Shown(Parent);
    const auto Placed = PlaceItems(HeightItems(Parent), Design, Look_.Scale(GapUnits), Actual);
    for (std::size_t I = 0; I < Controls.size(); ++I) {
      const TLayoutSpan &Width = Widths_.at(Controls[I]);
      Controls[I]->SetBounds({Width.Position, Placed[I].Position, Width.Size, Placed[I].Size});
      if (AsParent(*Controls[I]))
        PlaceHeights(static_cast<TWindowControl &>(*Controls[I]), Scaled(*Controls[I]).Height,
                     Placed[I].Size);
    }
  }

private:
  TRect Scaled(const TControl &Control) const { return Look_.Scale(Control.Design()); }

  std::vector<TLayoutItem> WidthItems(const TWindowControl &Parent) const {
    std::vector<TLayoutItem> Items;
    for (const TControl *Child : Shown(Parent)) {
      const TRect Place = Scaled(*Child);
      const TWindowControl *Inner = AsParent(*Child);
      const int Needed =
          std::max(Child->Needed(Place.Width).Width, Inner ? LeastWidth(*Inner, Place.Width) : 0);
      Items.push_back({Place.Left, Place.Width, Needed, Child->Anchors().Left,
                       Child->Anchors().Right, Place.Top, Place.Height});
    }
    return Items;
  }

  std::vector<TLayoutItem> HeightItems(const TWindowControl &Parent) const {
    std::vector<TLayoutItem> Items;
    for (const TControl *Child : Shown(Parent)) {
      const TRect Place = Scaled(*Child);
      const TWindowControl *Inner = AsParent(*Child);
      const int Needed = std::max(Child->Needed(Widths_.at(Child).Size).Height,
                                  Inner ? LeastHeight(*Inner, Place.Height) : 0);
      Items.push_back({Place.Top, Place.Height, Needed, Child->Anchors().Top,
                       Child->Anchors().Bottom, Place.Left, Place.Width});
    }
    return Items;
  }

  const TLook &Look_;
  TSpans Widths_;
};

} // namespace

TSize LeastSize(const TWindowControl &Root, const TSize &Design, int ActualWidth) {
  TPass Pass(Root.Look());
  const int Width = Pass.LeastWidth(Root, Design.Width);
  Pass.PlaceWidths(Root, Design.Width, std::max(Width, ActualWidth));
  return {Width, Pass.LeastHeight(Root, Design.Height)};
}

void PlaceControls(TWindowControl &Root, const TSize &Design, const TSize &Actual) {
  TPass Pass(Root.Look());
  Pass.PlaceWidths(Root, Design.Width, Actual.Width);
  Pass.PlaceHeights(Root, Design.Height, Actual.Height);
}

} // namespace hivesweep
