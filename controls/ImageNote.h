// An entry of a pane: a button that stays selected. Its texts and pictures are
// controls of their own that lie on it. Of the entries in one parent only the selected
// one is reached by Tab; the arrows lead to the others, and press them.
#pragma once

#include "controls/WindowControl.h"

namespace hivesweep {

class TImageNote : public TWindowControl {
public:
  TImageNote(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  bool Selected() const { return Selected_; }
  // Leaves the other entries as they are.
  void SetSelected(bool Selected);

  void Paint(TCanvas &Canvas) override;
  bool ShowsHand() const override { return true; }
  TAnswer Receive(const TMessage &Message) override;
  // Its hint is the one text of its own.
  void VisitTexts(const TTextVisitor &Visit) override;

protected:
  bool KeyDown(unsigned Key) override;
  bool TakesFocus() const override { return true; }

private:
  TImageNote *Neighbour(int Step) const;

  bool Selected_ = false;
};

} // namespace hivesweep
