#include "controls/Canvas.h"

#include <algorithm>

#include "controls/Win32.h"

namespace hivesweep {

namespace {

// Selects a pen and a brush of the stock that take any colour, for one shape.
class TInk {
public:
  TInk(HDC Context, TColor Pen, TColor Brush, int Width = 1)
      : Context_(Context), Pen_(CreatePen(PS_SOLID, Width, Pen)), Brush_(CreateSolidBrush(Brush)),
        OldPen_(SelectObject(Context, Pen_)), OldBrush_(SelectObject(Context, Brush_)) {}
  TInk(const TInk &) = delete;
  TInk &operator=(const TInk &) = delete;
  ~TInk() {
    SelectObject(Context_, OldPen_);
    SelectObject(Context_, OldBrush_);
    DeleteObject(Pen_);
    DeleteObject(Brush_);
  }

private:
  HDC Context_;
  HPEN Pen_;
  HBRUSH Brush_;
  HGDIOBJ OldPen_;
  HGDIOBJ OldBrush_;
};

} // namespace

void TCanvas::Fill(const TRect &Rect, TColorRole Color) {
  // The quickest way to fill a rectangle, and one without an object to free.
  const RECT Area = ToSystem(Rect);
  SetBkColor(Context_, Look_.Color(Color));
  ExtTextOutW(Context_, 0, 0, ETO_OPAQUE, &Area, nullptr, 0, nullptr);
}

void TCanvas::Frame(const TRect &Rect, TColorRole Color) {
  Fill({Rect.Left, Rect.Top, Rect.Width, 1}, Color);
  Fill({Rect.Left, Rect.Bottom() - 1, Rect.Width, 1}, Color);
  Fill({Rect.Left, Rect.Top, 1, Rect.Height}, Color);
  Fill({Rect.Right() - 1, Rect.Top, 1, Rect.Height}, Color);
}

void TCanvas::Box(const TRect &Rect, TColorRole Inside, TColorRole Border) {
  const TInk Ink(Context_, Look_.Color(Border), Look_.Color(Inside));
  const int Round = Look_.Scale(4);
  RoundRect(Context_, Rect.Left, Rect.Top, Rect.Right(), Rect.Bottom(), Round, Round);
}

void TCanvas::Text(const TRect &Rect, std::u16string_view Text, const TTextStyle &Form) {
  if (Text.empty() || Rect.Width <= 0)
    return;
  UINT Format = Form.Wrapped ? DT_WORDBREAK : DT_SINGLELINE | DT_VCENTER;
  if (!Form.Prefix)
    Format |= DT_NOPREFIX;
  if (Form.Ellipsis)
    Format |= DT_END_ELLIPSIS;
  if (Form.Align != TAlign::Left)
    Format |= Form.Align == TAlign::Center ? DT_CENTER : DT_RIGHT;
  RECT Place = ToSystem(Rect);
  const HGDIOBJ Before = SelectObject(Context_, Look_.Font(Form.Font));
  SetTextColor(Context_, Look_.Color(Form.Color));
  SetBkMode(Context_, TRANSPARENT);
  const std::u16string Copy(Text);
  DrawTextW(Context_, Wide(Copy), static_cast<int>(Copy.size()), &Place, Format);
  SelectObject(Context_, Before);
}

void TCanvas::FocusFrame(const TRect &Rect) {
  const RECT Area = ToSystem(Rect);
  SetTextColor(Context_, Look_.Color(TColorRole::Text));
  SetBkColor(Context_, Look_.Color(TColorRole::Window));
  DrawFocusRect(Context_, &Area);
}

void TCanvas::CheckMark(const TRect &Square, TColorRole Color) {
  const int Width = std::max(2, Square.Width / 6);
  const TInk Ink(Context_, Look_.Color(Color), Look_.Color(Color), Width);
  const POINT Points[] = {
      {Square.Left + Square.Width * 5 / 24, Square.Top + Square.Height / 2},
      {Square.Left + Square.Width * 10 / 24, Square.Top + Square.Height * 17 / 24},
      {Square.Left + Square.Width * 19 / 24, Square.Top + Square.Height * 7 / 24}};
  Polyline(Context_, Points, static_cast<int>(std::size(Points)));
}

void TCanvas::DownArrow(const TRect &Place, TColorRole Color) {
  const TInk Ink(Context_, Look_.Color(Color), Look_.Color(Color));
  const int Half = Look_.Scale(3);
  const int X = Place.Left + Place.Width / 2, Y = Place.Top + (Place.Height - Half) / 2;
  const POINT Points[] = {{X - Half, Y}, {X + Half, Y}, {X, Y + Half}};
  Polygon(Context_, Points, static_cast<int>(std::size(Points)));
}

TPaintBuffer::TPaintBuffer(HDC__ *Screen, const TRect &Area)
    : Screen_(Screen), Memory_(CreateCompatibleDC(Screen)),
      Picture_(CreateCompatibleBitmap(Screen, std::max(1, Area.Width), std::max(1, Area.Height))),
      Before_(SelectObject(Memory_, Picture_)), Area_(Area) {
  // What is drawn keeps the window's coordinates.
  SetViewportOrgEx(Memory_, -Area.Left, -Area.Top, nullptr);
}

TPaintBuffer::~TPaintBuffer() {
  BitBlt(Screen_, Area_.Left, Area_.Top, Area_.Width, Area_.Height, Memory_, Area_.Left, Area_.Top,
         SRCCOPY);
  SelectObject(Memory_, Before_);
  DeleteObject(Picture_);
  DeleteDC(Memory_);
}

} // namespace hivesweep
