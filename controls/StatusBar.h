// The line at the bottom of a form: panels with a text each, and the grip by which a
// form that can be resized is drawn larger.
#pragma once

#include <vector>

#include "controls/FormTable.h"
#include "controls/WindowControl.h"

namespace hivesweep {

class TStatusBar : public TWindowControl {
public:
  TStatusBar(TForm *Owner, TWindowControl *Parent, std::u16string Name,
             std::vector<TColumn> Panels);

  // Index counts from 0 and must be there.
  const std::u16string &PanelText(int Index) const;
  void SetPanelText(int Index, std::u16string_view Text);
  // One more at the right end, for a text that matters less than the form's width: the
  // others give up what they do not need for it, and where it is still too long it is
  // shown shortened, and told whole as a hint.
  void AddPanel(std::u16string_view Text);
  // A panel is as wide as given, or as its text needs; the last one takes what is left.
  TRect PanelBounds(int Index) const;

  std::u16string ShownHint() const override;
  bool CanHint() const override { return Shortens_ || TWindowControl::CanHint(); }
  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  TAnswer Receive(const TMessage &Message) override;
  void VisitTexts(const TTextVisitor &Visit) override;

private:
  int TextWidth(const TColumn &Panel) const;
  int PanelWidth(const TColumn &Panel) const;
  TRect Grip() const;

  std::vector<TColumn> Panels_;
  bool Shortens_ = false; // the last panel
};

} // namespace hivesweep
