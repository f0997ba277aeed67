// A component that can be seen: it has a place in a parent, a text, and a look. One
// without a window of its own (label, picture, group box) is drawn by its parent, in
// the same stroke, and so can lie on anything without flicker.
#pragma once

#include <string>

#include "controls/Canvas.h"
#include "controls/Component.h"

namespace hivesweep {

class TWindowControl;

class TControl : public TComponent {
public:
  // Parent is null for a form alone.
  TControl(TForm *Owner, TWindowControl *Parent, std::u16string Name);
  ~TControl() override;

  TWindowControl *Parent() const { return Parent_; }
  const TLook &Look() const;

  // ---- text -------------------------------------------------------------------
  const std::u16string &Text() const { return Text_; }
  // A text that needs another room than the one before moves the neighbours.
  void SetText(std::u16string_view Text);
  // Shown in a small window when the mouse rests here.
  const std::u16string &Hint() const { return Hint_; }
  void SetHint(std::u16string_view Hint);
  // What is told when the mouse rests here now; and whether it can ever be something.
  virtual std::u16string ShownHint() const { return Hint_; }
  virtual bool CanHint() const { return !Hint_.empty(); }

  // ---- place ------------------------------------------------------------------
  // In units, in the parent; the layout starts from it.
  void SetDesign(const TRect &Units, const TAnchors &Anchors);
  // Moves the control to another place in the parent's design.
  void SetDesign(const TRect &Units) { SetDesign(Units, Anchors_); }
  const TRect &Design() const { return Design_; }
  const TAnchors &Anchors() const { return Anchors_; }
  // In pixels, in the parent's window.
  const TRect &Bounds() const { return Bounds_; }
  virtual void SetBounds(const TRect &Pixels);

  // ---- state ------------------------------------------------------------------
  bool Visible() const { return Visible_; }
  virtual void SetVisible(bool Visible);
  bool Enabled() const { return Enabled_; }
  virtual void SetEnabled(bool Enabled);

  // ---- look -------------------------------------------------------------------
  TFontRole Font() const { return Font_; }
  void SetFont(TFontRole Font);
  TColorRole Color() const { return Color_; }
  void SetColor(TColorRole Color);
  // What stands behind it; inherited from the parent until it is set.
  TColorRole Ground() const;
  void SetGround(TColorRole Ground);

  // The size in pixels that it needs to show its texts whole, given that width; 0
  // where any size will do. The width itself counts as needed only when it must be.
  virtual TSize Needed(int Width) const;
  // Draws itself in the coordinates of the window that it is drawn in.
  virtual void Paint(TCanvas &Canvas) = 0;
  // A press with the mouse, or what stands for it.
  virtual void Click() { Fire(TEvent::Click); }
  // Whether a press at a place of a control without a window is meant for it.
  virtual bool TakesMouse() const { return Handles(TEvent::Click) && Enabled_; }
  virtual bool ShowsHand() const { return false; }

  // To be drawn again soon.
  virtual void Invalidate();
  // Its room, or whether it is seen, has changed.
  void RequestLayout();

  void VisitTexts(const TTextVisitor &Visit) override;

protected:
  virtual void TextChanged() {}
  // Remember what is so already, and have it drawn.
  void TakeBounds(const TRect &Pixels);
  void TakeVisible(bool Visible);

private:
  TWindowControl *Parent_;
  std::u16string Text_;
  std::u16string Hint_;
  TRect Design_;
  TAnchors Anchors_;
  TRect Bounds_;
  bool Visible_ = true;
  bool Enabled_ = true;
  TFontRole Font_ = TFontRole::Body;
  TColorRole Color_ = TColorRole::Text;
  TColorRole Ground_ = TColorRole::Face;
  bool OwnGround_ = false;
};

} // namespace hivesweep
