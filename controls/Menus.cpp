#include "controls/Menus.h"

#include "controls/Form.h"
#include "controls/Win32.h"

namespace hivesweep {

TMainMenu::~TMainMenu() {
  if (!Menu_)
    return;
  if (Owner()->Handle())
    Owner()->SetMenu(nullptr);
  DestroyMenu(Menu_);
}

void TMainMenu::Attach() {
  const HMENU Before = std::exchange(Menu_, MakeSystemMenu(*this, true));
  Owner()->SetMenu(Menu_);
  if (Before)
    DestroyMenu(Before);
  Owner()->RequestLayout();
}

void TMainMenu::ItemsChanged() {
  if (Menu_)
    Attach();
}

void TPopupMenu::PopupAt(TPoint Screen) {
  Fire(TEvent::Popup);
  PopupBranch(*Owner(), *this, {Screen.X, Screen.Y, 0, 0});
}

void PopupBranch(TForm &Form, const TMenuBranch &Branch, const TRect &Screen) {
  const HMENU Menu = MakeSystemMenu(Branch, false);
  TPMPARAMS Keep{};
  Keep.cbSize = sizeof Keep;
  Keep.rcExclude = ToSystem(Screen);
  const BOOL Chosen = TrackPopupMenuEx(Menu, TPM_RETURNCMD | TPM_RIGHTBUTTON | TPM_VERTICAL,
                                       Screen.Left, Screen.Bottom(), Form.Handle(), &Keep);
  DestroyMenu(Menu);
  if (Chosen)
    Form.RunCommand(static_cast<unsigned>(Chosen));
}

} // namespace hivesweep
