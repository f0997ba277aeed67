#include "controls/Pressable.h"

#include "controls/Win32.h"

namespace hivesweep {

TPressable::TPressable(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  MakeWindow(L"BUTTON", BS_OWNERDRAW | WS_TABSTOP);
}

bool TPressable::KeyDown(unsigned Key) {
  if (Key != VK_SPACE)
    return false;
  Click();
  return true;
}

TAnswer TPressable::Reflected(const TMessage &Message) {
  // The system's class asks to be drawn at once; it is drawn with all else, instead.
  if (Message.Id != WM_DRAWITEM)
    return std::nullopt;
  Invalidate();
  return 1;
}

} // namespace hivesweep
