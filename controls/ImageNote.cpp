#include "controls/ImageNote.h"

#include "controls/Win32.h"

namespace hivesweep {

TImageNote::TImageNote(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TWindowControl(Owner, Parent, std::move(Name)) {
  // While none is selected the first one is where Tab leads.
  MakeWindow(nullptr, Neighbour(-1) ? 0U : static_cast<unsigned>(WS_TABSTOP));
}

void TImageNote::SetSelected(bool Selected) {
  Selected_ = Selected;
  const LONG Style = GetWindowLongW(Handle(), GWL_STYLE);
  SetWindowLongW(Handle(), GWL_STYLE, Selected ? Style | WS_TABSTOP : Style & ~WS_TABSTOP);
  Invalidate();
}

void TImageNote::Paint(TCanvas &Canvas) {
  const TRect Whole{0, 0, Bounds().Width, Bounds().Height};
  Canvas.Fill(Whole, Selected_   ? TColorRole::PaneSelected
                     : Hovered() ? TColorRole::PaneHover
                                 : Ground());
  if (ShowsFocus())
    Canvas.FocusFrame(Whole.Inner(1));
}

TImageNote *TImageNote::Neighbour(int Step) const {
  TImageNote *Before = nullptr;
  bool Passed = false;
  for (TControl *Child : Parent()->Children()) {
    auto *Note = dynamic_cast<TImageNote *>(Child);
    if (Note == this) {
      if (Step < 0)
        return Before;
      Passed = true;
    } else if (Note && Note->Visible() && Note->Enabled()) {
      if (Passed)
        return Note;
      Before = Note;
    }
  }
  return Step < 0 ? Before : nullptr;
}

bool TImageNote::KeyDown(unsigned Key) {
  if (Key == VK_SPACE) {
    Click();
    return true;
  }
  if (Key != VK_UP && Key != VK_DOWN)
    return false;
  if (TImageNote *Next = Neighbour(Key == VK_UP ? -1 : 1)) {
    Next->Focus();
    Next->Click();
  }
  return true;
}

TAnswer TImageNote::Receive(const TMessage &Message) {
  if (Message.Id == WM_GETDLGCODE)
    return DLGC_WANTARROWS;
  return TWindowControl::Receive(Message);
}

void TImageNote::VisitTexts(const TTextVisitor &Visit) {
  std::u16string Text = Hint();
  if (Text.empty())
    return;
  Visit(u"Hint", Text);
  SetHint(Text);
}

} // namespace hivesweep
