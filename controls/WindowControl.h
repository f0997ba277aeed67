// A control with a window of the system. All windows share one window procedure,
// which finds their object in one map.
#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "controls/Control.h"
#include "controls/SystemTypes.h"

namespace hivesweep {

// A window message, without the system's types.
struct TMessage {
  unsigned Id;
  std::uintptr_t WParam;
  std::intptr_t LParam;
};

// An answer; nothing: the system is to handle the message.
using TAnswer = std::optional<std::intptr_t>;

class TWindowControl : public TControl {
public:
  using TControl::TControl;
  ~TWindowControl() override;

  HWND__ *Handle() const { return Window_; }
  bool Focused() const;
  void Focus();

  void SetBounds(const TRect &Pixels) override;
  void SetVisible(bool Visible) override;
  void SetEnabled(bool Enabled) override;
  void Invalidate() override;
  void InvalidateArea(const TRect &Area);

  // Draws the ground. The controls without a window are drawn afterwards.
  void Paint(TCanvas &Canvas) override;

  // The look has other colours now.
  virtual void ColorsChanged() { Invalidate(); }

  // ---- children, in the order of their making ------------------------------------
  const std::vector<TControl *> &Children() const { return Children_; }
  void Adopt(TControl &Child);
  void Disown(TControl &Child);

  // ---- the window procedure's side ------------------------------------------------
  // The object of a window; null for a foreign one.
  static TWindowControl *Of(HWND__ *Window);
  // Handles a message that came to the window.
  virtual TAnswer Receive(const TMessage &Message);
  // Handles a message that a child's window sends to its parent: WM_COMMAND, ...
  virtual TAnswer Reflected(const TMessage &Message);

protected:
  // Makes the window. Class: one of the system's, or null for a plain one of ours.
  void MakeWindow(const wchar_t *Class, unsigned Style, unsigned ExtendedStyle = 0);
  // What the system's own window class does with a message.
  std::intptr_t Inherited(const TMessage &Message);
  // The window draws itself with Paint; false where the system's class does.
  virtual bool PaintsItself() const { return true; }
  void TextChanged() override;
  // A key, of a window that has the focus; false: not handled.
  virtual bool KeyDown(unsigned Key);
  // A press brings the focus here.
  virtual bool TakesFocus() const;
  bool ShowsFocus() const;
  bool Hovered() const { return Hovered_; }
  bool Pressed() const { return Pressed_; }

private:
  friend struct TWindowMap;

  TAnswer MouseMessage(const TMessage &Message);
  TControl *ChildAt(TPoint Point) const;
  void PaintAll(HDC__ *Context);
  void PaintWindow();
  void Track(bool Inside);
  void Press(TPoint Point);
  void LetGo(TPoint Point);

  HWND__ *Window_ = nullptr;
  std::vector<TControl *> Children_;
  TControl *PressedChild_ = nullptr;
  bool Hovered_ = false;
  bool Pressed_ = false;
};

} // namespace hivesweep
