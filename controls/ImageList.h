// Small pictures of one size, known by their numbers.
#pragma once

#include <string_view>

#include "controls/Canvas.h"
#include "controls/Component.h"
#include "controls/SystemTypes.h"

namespace hivesweep {

class TImageList : public TComponent {
public:
  // Units: the pictures' width and height; of the screen's scale.
  TImageList(TForm *Owner, std::u16string Name, int Units);
  ~TImageList() override;

  // The pictures' width and height in pixels.
  int Extent() const { return Extent_; }
  int Count() const;
  // Takes a copy; icons of another size are scaled. Answers the picture's number.
  int Add(HICON__ *Icon);
  // The icon of that name among the program's resources, in the size that fits best;
  // false when there is none, and then nothing is added.
  bool AddResource(std::u16string_view Resource);
  // Takes all pictures of a list of the same extent in place of its own, before it is given
  // to any control.
  void CopyFrom(const TImageList &Other);
  // In the middle of the place. Nothing is drawn for a number that is not there.
  // Enabled: false shows it paler.
  void Draw(TCanvas &Canvas, const TRect &Place, int Number, bool Enabled = true) const;

  // For the system's controls; stays owned.
  _IMAGELIST *Handle() const { return List_; }

private:
  int Extent_;
  _IMAGELIST *List_;
};

} // namespace hivesweep
