// A text: plain, wrapped, shortened to its place, or a link.
#pragma once

#include "controls/Control.h"

namespace hivesweep {

class TLabel : public TControl {
public:
  using TControl::TControl;

  // Broken into lines; it then grows downwards as its text needs.
  void SetWrapped(bool Wrapped);
  // For a text of any length: what does not fit is replaced by "...", and the label
  // asks for no room.
  void SetEllipsis(bool Ellipsis);
  // Underlined, under a hand. A press on a label that is no link counts, too.
  void SetLink(bool Link);
  bool IsLink() const { return Link_; }
  void SetAlign(TAlign Align);

  // The text does not fit into the label's place and is shown shortened.
  bool Shortened() const;

  TSize Needed(int Width) const override;
  void Paint(TCanvas &Canvas) override;
  // A text that is shown shortened is told whole.
  std::u16string ShownHint() const override { return Shortened() ? Text() : Hint(); }
  bool CanHint() const override { return Ellipsis_ || TControl::CanHint(); }
  bool ShowsHand() const override { return Link_; }

private:
  TTextStyle Style() const;

  bool Wrapped_ = false;
  bool Ellipsis_ = false;
  bool Link_ = false;
  TAlign Align_ = TAlign::Left;
};

} // namespace hivesweep
