// The icons, by the numbers that they have in the window's lists of images. Each has its
// images in 16, 24, 32 and 48 pixels.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace hivesweep {

// The summary, then the areas by their numbers, the risks as problems name them, and
// what menus, tool bar and check boxes show.
enum class TIcon : int {
  Summary = 0,
  FirstArea = 1,
  RiskLow = 18,
  RiskMedium = 19,
  RiskHigh = 20,
  Scan,
  Fix,
  Ignore,
  Restore,
  Help,
  Home,
  About,
  Description,
  Exit,
  CheckOff,
  CheckOn,
  App,
};

// By number: an icon's name among the program's resources. The program's own comes first
// in their order, so that the explorer shows that one.
inline constexpr std::array<std::u16string_view, 33> IconNames = {
    u"SUMMARY",
    u"AREA_ACTIVEX",
    u"AREA_APPLICATION_PATHS",
    u"AREA_FILE_TYPES",
    u"AREA_FONTS",
    u"AREA_HELP_FILES",
    u"AREA_HISTORY_LISTS",
    u"AREA_SHARED_FILES",
    u"AREA_SHORTCUT",
    u"AREA_SOFTWARE",
    u"AREA_SOUNDS",
    u"AREA_START_MENU",
    u"AREA_STARTUP_ITEMS",
    u"AREA_MUI_CACHE",
    u"AREA_FILE_EXTEND",
    u"AREA_CLASSES",
    u"AREA_SYSTEM_EXTENTIONS",
    u"AREA_DEEP_SCAN",
    u"RISK_LOW",
    u"RISK_MEDIUM",
    u"RISK_HIGH",
    u"TOOL_SCAN",
    u"TOOL_FIX",
    u"TOOL_IGNORE",
    u"TOOL_RESTORE",
    u"TOOL_HELP",
    u"TOOL_HOME",
    u"TOOL_ABOUT",
    u"TOOL_DESCRIPTION",
    u"TOOL_EXIT",
    u"CHECK_OFF",
    u"CHECK_ON",
    u"APP",
};
static_assert(IconNames.size() == static_cast<std::size_t>(TIcon::App) + 1);

constexpr std::u16string_view IconName(TIcon Icon) {
  return IconNames[static_cast<std::size_t>(Icon)];
}

} // namespace hivesweep
