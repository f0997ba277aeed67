// Drawing in the colours and fonts of a look.
#pragma once

#include <string_view>

#include "controls/Look.h"
#include "controls/SystemTypes.h"

namespace hivesweep {

enum class TAlign { Left, Center, Right };

// How a text stands in its place; always in the middle of its height, unless wrapped.
struct TTextStyle {
  TFontRole Font = TFontRole::Body;
  TColorRole Color = TColorRole::Text;
  TAlign Align = TAlign::Left;
  bool Wrapped = false;
  bool Ellipsis = false; // a text that is too long ends in "..."
  bool Prefix = false;   // "&" marks an access key
};

// Borrows a device context. Coordinates are those of the window that is drawn.
class TCanvas {
public:
  TCanvas(HDC__ *Context, const TLook &Look) : Context_(Context), Look_(Look) {}

  const TLook &Look() const { return Look_; }
  HDC__ *Context() { return Context_; }

  void Fill(const TRect &Rect, TColorRole Color);
  void Frame(const TRect &Rect, TColorRole Color);
  // A filled box with rounded corners.
  void Box(const TRect &Rect, TColorRole Inside, TColorRole Border);
  void Text(const TRect &Rect, std::u16string_view Text, const TTextStyle &Form);
  void FocusFrame(const TRect &Rect);
  // A check mark that fills the square, and a small triangle that points down.
  void CheckMark(const TRect &Square, TColorRole Color);
  void DownArrow(const TRect &Place, TColorRole Color);

private:
  HDC__ *Context_;
  const TLook &Look_;
};

// A picture in memory of what a window is about to show; copied to the screen when
// the object ends, so that nothing half-drawn is ever seen.
class TPaintBuffer {
public:
  TPaintBuffer(HDC__ *Screen, const TRect &Area);
  TPaintBuffer(const TPaintBuffer &) = delete;
  TPaintBuffer &operator=(const TPaintBuffer &) = delete;
  ~TPaintBuffer();

  HDC__ *Context() { return Memory_; }

private:
  HDC__ *Screen_;
  HDC__ *Memory_;
  HBITMAP__ *Picture_;
  void *Before_;
  TRect Area_;
};

} // namespace hivesweep
