#include "controls/Control.h"

#include "controls/Form.h"

namespace hivesweep {

TControl::TControl(TForm *Owner, TWindowControl *Parent, std::u16string Name)
    : TComponent(Owner, std::move(Name)), Parent_(Parent) {
  if (Parent_)
    Parent_->Adopt(*this);
}

TControl::~TControl() {
  if (Parent_)
    Parent_->Disown(*this);
}

const TLook &TControl::Look() const { return Owner()->FormLook(); }

void TControl::SetText(std::u16string_view Text) {
  if (Text == Text_)
    return;
  const TSize Before = Needed(Bounds_.Width);
  Text_ = Text;
  TextChanged();
  Invalidate();
  if (Needed(Bounds_.Width) != Before)
    RequestLayout();
}

void TControl::SetHint(std::u16string_view Hint) {
  const bool Could = CanHint();
  Hint_ = Hint;
  if (CanHint() != Could)
    RequestLayout();
}

void TControl::SetDesign(const TRect &Units, const TAnchors &Anchors) {
  Design_ = Units;
  Anchors_ = Anchors;
  RequestLayout();
}

void TControl::SetBounds(const TRect &Pixels) { TakeBounds(Pixels); }

void TControl::TakeBounds(const TRect &Pixels) {
  if (Pixels == Bounds_)
    return;
  Invalidate();
  Bounds_ = Pixels;
  Invalidate();
}

void TControl::SetVisible(bool Visible) { TakeVisible(Visible); }

void TControl::TakeVisible(bool Visible) {
  if (Visible == Visible_)
    return;
  Visible_ = Visible;
  Invalidate();
  RequestLayout();
}

void TControl::SetEnabled(bool Enabled) {
  Enabled_ = Enabled;
  Invalidate();
}

void TControl::SetFont(TFontRole Font) {
  if (Font == Font_)
    return;
  Font_ = Font;
  Invalidate();
  RequestLayout();
}

void TControl::SetColor(TColorRole Color) {
  Color_ = Color;
  Invalidate();
}

TColorRole TControl::Ground() const { return OwnGround_ || !Parent_ ? Ground_ : Parent_->Ground(); }

void TControl::SetGround(TColorRole Ground) {
  Ground_ = Ground;
  OwnGround_ = true;
  Invalidate();
}

TSize TControl::Needed(int Width) const {
  static_cast<void>(Width);
  return {};
}

void TControl::Invalidate() {
  if (Parent_)
    Parent_->InvalidateArea(Bounds_);
}

void TControl::RequestLayout() {
  if (Owner())
    Owner()->RequestLayout();
}

void TControl::VisitTexts(const TTextVisitor &Visit) {
  std::u16string Caption = Text_;
  Visit(u"Caption", Caption);
  SetText(Caption);
  if (!Hint_.empty())
    Visit(u"Hint", Hint_);
}

} // namespace hivesweep
