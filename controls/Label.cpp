#include "controls/Label.h"

namespace hivesweep {

void TLabel::SetWrapped(bool Wrapped) {
  Wrapped_ = Wrapped;
  RequestLayout();
  Invalidate();
}

void TLabel::SetEllipsis(bool Ellipsis) {
  Ellipsis_ = Ellipsis;
  RequestLayout();
  Invalidate();
}

void TLabel::SetLink(bool Link) {
  Link_ = Link;
  Invalidate();
}

void TLabel::SetAlign(TAlign Align) {
  Align_ = Align;
  Invalidate();
}

TTextStyle TLabel::Style() const {
  TTextStyle Style;
  Style.Font = Link_ ? TFontRole::Link : Font();
  Style.Color = Enabled() ? Color() : TColorRole::QuietText;
  Style.Align = Align_;
  Style.Wrapped = Wrapped_;
  Style.Ellipsis = Ellipsis_;
  return Style;
}

bool TLabel::Shortened() const {
  return Ellipsis_ && !Wrapped_ && Look().Measure(Text(), Style().Font).Width > Bounds().Width;
}

TSize TLabel::Needed(int Width) const {
  if (Text().empty())
    return {};
  const TSize Size = Look().Measure(Text(), Style().Font, Wrapped_ ? Width : 0);
  // A word that is wider than the place of a wrapped text still has to fit.
  const bool AsksForWidth = !Ellipsis_ && (!Wrapped_ || Size.Width > Width);
  return {AsksForWidth ? Size.Width : 0, Size.Height};
}

void TLabel::Paint(TCanvas &Canvas) { Canvas.Text(Bounds(), Text(), Style()); }

} // namespace hivesweep
