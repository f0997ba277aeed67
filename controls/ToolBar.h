// A bar of large buttons, each an icon above a caption. An entry with a menu opens it;
// one that also has a handler opens it only at its arrow. Tab leads to the bar, arrow
// keys along it.
#pragma once

#include "controls/MenuItem.h"

namespace hivesweep {

class TToolBar : public TWindowControl, public TMenuBranch {
public:
  TToolBar(TForm *Owner, TWindowControl *Parent, std::u16string Name);

  // The place of a visible entry, its arrow included; empty for another one.
  TRect ItemBounds(const TMenuItem &Item) const;

  void ItemsChanged() override;
  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  TAnswer Receive(const TMessage &Message) override;
  void VisitTexts(const TTextVisitor &Visit) override { static_cast<void>(Visit); }

protected:
  bool KeyDown(unsigned Key) override;

private:
  TMenuItem *ItemAt(TPoint Point) const;
  int ItemWidth(const TMenuItem &Item) const;
  int ArrowWidth(const TMenuItem &Item) const;
  void PaintItem(TCanvas &Canvas, const TMenuItem &Item);
  void PressItem(TMenuItem &Item, bool Arrow);
  void Open(TMenuItem &Item);
  void Move(int Step);

  TMenuItem *Under_ = nullptr;   // the mouse
  TMenuItem *Current_ = nullptr; // the keyboard
};

} // namespace hivesweep
