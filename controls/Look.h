// The one look of all forms: colours by their role, fonts by their role, and the
// scale of the screen.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

#include "controls/Geometry.h"
#include "controls/SystemTypes.h"

namespace hivesweep {

enum class TColorRole {
  Window,       // behind text and lists
  Text,         // on Window and on Face
  QuietText,    // explanations, and what is disabled
  Face,         // a form's ground
  Border,       // lines and frames
  Button,       // a button's face
  ButtonHover,  // the same under the mouse
  ButtonDown,   // the same while pressed
  Accent,       // default button, check marks, progress
  AccentText,   // on Accent
  Heading,      // the title of a view, links
  Pane,         // the ground of the category pane
  PaneText,     // on Pane
  PaneHover,    // an entry of the pane under the mouse
  PaneSelected, // the selected entry of the pane
  PaneSelectedText,
  RiskHigh, // the grounds of list rows
  RiskMedium,
  RiskLow,
  Count
};

enum class TFontRole { Body, Bold, Title, Link, Count };

// 0x00BBGGRR, as the system's drawing functions take it.
using TColor = std::uint32_t;

class TLook {
public:
  static constexpr int DesignDpi = 96;

  // Dpi: dots per inch of the screen; another number than the system's own lays a
  // form out as on such a screen.
  explicit TLook(int Dpi = SystemDpi());
  TLook(const TLook &) = delete;
  TLook &operator=(const TLook &) = delete;
  ~TLook();

  static int SystemDpi();

  int Dpi() const { return Dpi_; }
  int Scale(int Units) const { return (Units * Dpi_ + DesignDpi / 2) / DesignDpi; }
  TRect Scale(const TRect &Units) const;

  TColor Color(TColorRole Role) const { return Colors_[static_cast<std::size_t>(Role)]; }
  // cppcheck-suppress CastIntegerToAddressAtReturn ; it is a pointer already
  HFONT__ *Font(TFontRole Role) const { return Fonts_[static_cast<std::size_t>(Role)]; }

  // Takes colours anew: the palette, or in a high contrast scheme the system's
  // colours alone. Called when the user has changed them.
  void ReloadColors();
  void TakeColors(bool HighContrast);

  // The place that a text takes, broken into lines of that width; 0: in one line.
  // Prefix: "&" marks an access key and takes no place.
  TSize Measure(std::u16string_view Text, TFontRole Font, int Width = 0, bool Prefix = false) const;

private:
  void MakeFonts();

  int Dpi_;
  std::array<TColor, static_cast<std::size_t>(TColorRole::Count)> Colors_{};
  std::array<HFONT__ *, static_cast<std::size_t>(TFontRole::Count)> Fonts_{};
  HDC__ *Measuring_;
};

} // namespace hivesweep
