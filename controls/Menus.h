// The menu bar of a form, and menus that pop up.
#pragma once

#include "controls/MenuItem.h"
#include "controls/SystemTypes.h"

namespace hivesweep {

// Shows the form's menu bar. At most one in a form.
class TMainMenu : public TComponent, public TMenuBranch {
public:
  using TComponent::TComponent;
  ~TMainMenu() override;

  // To be called once, when all entries are there; later changes show by themselves.
  void Attach();
  void ItemsChanged() override;

private:
  HMENU__ *Menu_ = nullptr;
};

class TPopupMenu : public TComponent, public TMenuBranch {
public:
  using TComponent::TComponent;

  bool Knows(TEvent Event) const override { return Event == TEvent::Popup; }
  // Opens it at a point of the screen and waits for the choice.
  void PopupAt(TPoint Screen);
};

// Opens a menu with the branch's entries below (or above) a place of the screen, waits
// for the choice and carries it out.
void PopupBranch(TForm &Form, const TMenuBranch &Branch, const TRect &Screen);

} // namespace hivesweep
