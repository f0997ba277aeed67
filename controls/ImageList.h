// Small pictures of one size, known by their numbers.
#pragma once

#include <string_view>

#include "controls/Canvas.h"
#include "controls/Component.h"
#include "controls/SystemTypes.h"

namespace hivesweep {

class TImageList : public TComponent {
public:
  // Units: the pictures' width and height; of the screen's scale. AirUnits: what the
  // system's controls leave free at each side of a picture, which they would set close.
  TImageList(TForm *Owner, std::u16string Name, int Units, int AirUnits = 0);
  ~TImageList() override;

  // The pictures' width and height in pixels.
  int Extent() const { return Extent_; }
  int CellExtent() const { return Extent_ + 2 * Air_; } // the air included
  int Count() const;
  // Takes a copy; icons of another size are scaled. Answers the picture's number.
  int Add(HICON__ *Icon);
  // The icon of that name among the program's resources, in the size that fits best;
  // false when there is none, and then nothing is added.
  bool AddResource(std::u16string_view Resource);
  // Takes all pictures of a list of the same extents in place of its own, before it is given
  // to any control.
  void CopyFrom(const TImageList &Other);
  // In the middle of the place. Nothing is drawn for a number that is not there.
  // Enabled: false shows it paler.
  void Draw(TCanvas &Canvas, const TRect &Place, int Number, bool Enabled = true) const;

  // For the system's controls, with the air; stays owned.
  _IMAGELIST *Handle() const { return List_; }

private:
  int Extent_;
  int Air_;
  _IMAGELIST *List_;
};

} // namespace hivesweep
