// Short texts below each other, each of which can be pressed.
#pragma once

#include <vector>

#include "controls/WindowControl.h"

namespace hivesweep {

class TLabelNote : public TWindowControl {
public:
  TLabelNote(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  const std::vector<std::u16string> &Items() const { return Items_; }
  void SetItems(std::vector<std::u16string> Items);
  // The item that was pressed last; -1 before the first press.
  int Index() const { return Index_; }

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  bool ShowsHand() const override { return true; }
  TAnswer Receive(const TMessage &Message) override;
  void VisitTexts(const TTextVisitor &Visit) override;

protected:
  bool KeyDown(unsigned Key) override;

private:
  int LineHeight() const;

  std::vector<std::u16string> Items_;
  int Index_ = -1;
};

} // namespace hivesweep
