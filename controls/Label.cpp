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

TTextForm TLabel::Form() const {
  TTextForm Form;
  Form.Font = Link_ ? TFontRole::Link : Font();
  Form.Color = Enabled() ? Color() : TColorRole::QuietText;
  Form.Align = Align_;
  Form.Wrapped = Wrapped_;
  Form.Ellipsis = Ellipsis_;
  return Form;
}

bool TLabel::Shortened() const {
  return Ellipsis_ && !Wrapped_ && Look().Measure(Text(), Form().Font).Width > Bounds().Width;
}

TSize TLabel::Needed(int Width) const {
  if (Text().empty())
    return {};
  const TSize Size = Look().Measure(Text(), Form().Font, Wrapped_ ? Width : 0);
  // A word that is wider than the place of a wrapped text still has to fit.
  const bool AsksForWidth = !Ellipsis_ && (!Wrapped_ || Size.Width > Width);
  return {AsksForWidth ? Size.Width : 0, Size.Height};
}

void TLabel::Paint(TCanvas &Canvas) { Canvas.Text(Bounds(), Text(), Form()); }

} // namespace hivesweep
