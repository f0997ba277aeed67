#include "controls/Look.h"

#include "controls/Win32.h"

namespace hivesweep {

namespace {

struct TPaint {
  TColorRole Role;
  TColor Own;
  int InHighContrast; // a system colour's number
};

// In high contrast a ground and the text on it always come from one pair of the
// system's colours; the tints of the risks are given up there, their icons stay.
constexpr TPaint Palette[] = {
    {TColorRole::Window, RGB(255, 255, 255), COLOR_WINDOW},
    {TColorRole::Text, RGB(0, 0, 0), COLOR_WINDOWTEXT},
    {TColorRole::QuietText, RGB(88, 96, 108), COLOR_GRAYTEXT},
    {TColorRole::Face, RGB(246, 248, 250), COLOR_WINDOW},
    {TColorRole::Border, RGB(196, 204, 214), COLOR_WINDOWTEXT},
    {TColorRole::Button, RGB(255, 255, 255), COLOR_WINDOW},
    {TColorRole::ButtonHover, RGB(232, 241, 251), COLOR_WINDOW},
    {TColorRole::ButtonDown, RGB(208, 226, 244), COLOR_WINDOW},
    {TColorRole::Accent, RGB(10, 78, 146), COLOR_HIGHLIGHT},
    {TColorRole::AccentText, RGB(255, 255, 255), COLOR_HIGHLIGHTTEXT},
    {TColorRole::Heading, RGB(10, 78, 146), COLOR_WINDOWTEXT},
    {TColorRole::Pane, RGB(230, 236, 243), COLOR_WINDOW},
    {TColorRole::PaneText, RGB(0, 0, 0), COLOR_WINDOWTEXT},
    {TColorRole::PaneHover, RGB(212, 224, 237), COLOR_WINDOW},
    {TColorRole::PaneSelected, RGB(10, 78, 146), COLOR_HIGHLIGHT},
    {TColorRole::PaneSelectedText, RGB(255, 255, 255), COLOR_HIGHLIGHTTEXT},
    {TColorRole::RiskHigh, RGB(253, 236, 234), COLOR_WINDOW},
    {TColorRole::RiskMedium, RGB(255, 246, 225), COLOR_WINDOW},
    {TColorRole::RiskLow, RGB(237, 247, 237), COLOR_WINDOW},
};
static_assert(std::size(Palette) == static_cast<std::size_t>(TColorRole::Count));

bool IsHighContrast() {
  HIGHCONTRASTW Scheme{};
  Scheme.cbSize = sizeof Scheme;
  return SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof Scheme, &Scheme, 0) &&
         (Scheme.dwFlags & HCF_HIGHCONTRASTON) != 0;
}

// The font that the user chose for messages, for the system's own scale.
LOGFONTW MessageFont() {
  NONCLIENTMETRICSW Metrics{};
  Metrics.cbSize = sizeof Metrics;
  if (!SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof Metrics, &Metrics, 0))
    GetObjectW(GetStockObject(DEFAULT_GUI_FONT), sizeof Metrics.lfMessageFont,
               &Metrics.lfMessageFont);
  return Metrics.lfMessageFont;
}

} // namespace

TLook::TLook(int Dpi) : Dpi_(Dpi), Measuring_(CreateCompatibleDC(nullptr)) {
  ReloadColors();
  MakeFonts();
}

TLook::~TLook() {
  DeleteDC(Measuring_);
  for (HFONT Font : Fonts_)
    DeleteObject(Font);
}

int TLook::SystemDpi() {
  const HDC Screen = GetDC(nullptr);
  const int Dpi = GetDeviceCaps(Screen, LOGPIXELSY);
  ReleaseDC(nullptr, Screen);
  return Dpi > 0 ? Dpi : DesignDpi;
}

TRect TLook::Scale(const TRect &Units) const {
  // Edges are scaled, not sizes: what touches in the table touches on the screen.
  const int Left = Scale(Units.Left), Top = Scale(Units.Top);
  return {Left, Top, Scale(Units.Right()) - Left, Scale(Units.Bottom()) - Top};
}

void TLook::ReloadColors() { TakeColors(IsHighContrast()); }

void TLook::TakeColors(bool HighContrast) {
  for (const TPaint &Paint : Palette)
    Colors_[static_cast<std::size_t>(Paint.Role)] =
        HighContrast ? GetSysColor(Paint.InHighContrast) : Paint.Own;
}

void TLook::MakeFonts() {
  LOGFONTW Font = MessageFont();
  Font.lfHeight = MulDiv(Font.lfHeight, Dpi_, SystemDpi());
  const auto Make = [&](TFontRole Role) {
    Fonts_[static_cast<std::size_t>(Role)] = CreateFontIndirectW(&Font);
  };
  Make(TFontRole::Body);
  Font.lfUnderline = TRUE;
  Make(TFontRole::Link);
  Font.lfUnderline = FALSE;
  Font.lfWeight = FW_BOLD;
  Make(TFontRole::Bold);
  Font.lfHeight = Font.lfHeight * 3 / 2;
  Make(TFontRole::Title);
}

TSize TLook::Measure(std::u16string_view Text, TFontRole Font, int Width, bool Prefix) const {
  const HGDIOBJ Before = SelectObject(Measuring_, this->Font(Font));
  RECT Place{0, 0, Width > 0 ? Width : 32'000, 0};
  const UINT Format = DT_CALCRECT | (Width > 0 ? DT_WORDBREAK : DT_SINGLELINE) |
                      (Prefix ? 0U : static_cast<UINT>(DT_NOPREFIX));
  const std::u16string Copy(Text);
  DrawTextW(Measuring_, Wide(Copy), static_cast<int>(Copy.size()), &Place, Format);
  SelectObject(Measuring_, Before);
  return {static_cast<int>(Place.right), static_cast<int>(Place.bottom)};
}

} // namespace hivesweep
