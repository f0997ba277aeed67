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
  // A panel is as wide as given, or as its text needs; the last one takes what is left.
  TRect PanelBounds(int Index) const;

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  TAnswer Receive(const TMessage &Message) override;
  void VisitTexts(const TTextVisitor &Visit) override;

private:
  int PanelWidth(const TColumn &Panel) const;
  TRect Grip() const;

  std::vector<TColumn> Panels_;
};

} // namespace hivesweep
