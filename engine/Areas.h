// The seventeen scan areas, in the order in which they run.
#pragma once

#include <array>
#include <cstdint>
#include <string_view>

namespace hivesweep {

// How much can go wrong when an entry of an area is removed.
enum class TRisk { Low, Medium, High };

struct TArea {
  int Number;                    // 1 to 17
  std::u16string_view Switch;    // its key in the settings file
  std::u16string_view GroupName; // the name of its group of problems
  std::u16string_view Caption;   // English
  TRisk Risk;
  bool OnByDefault; // as the window shows it, without a settings file
};

inline constexpr std::size_t AreaCount = 17;
inline constexpr int DeepScanArea = 17;

// The spelling "Extentions" is the one that language files and users know.
inline constexpr std::array<TArea, AreaCount> Areas = {{
    {1, u"Active", u"2", u"ActiveX Component", TRisk::High, true},
    {2, u"App", u"3", u"Application Paths", TRisk::Medium, true},
    {3, u"Filetypes", u"4", u"File Types", TRisk::High, true},
    {4, u"Fonts", u"5", u"Fonts", TRisk::Low, true},
    {5, u"Help", u"6", u"Help Files", TRisk::Low, true},
    {6, u"History", u"7", u"History Lists", TRisk::Low, true},
    {7, u"Shared", u"8", u"Shared Files", TRisk::Low, true},
    {8, u"Shortcut", u"9", u"Shortcut", TRisk::Low, true},
    {9, u"Software", u"10", u"Software", TRisk::Medium, true},
    {10, u"Sounds", u"11", u"Sounds", TRisk::Low, true},
    {11, u"Startmenu", u"12", u"Start Menu", TRisk::Low, true},
    {12, u"Startup", u"13", u"Startup Items", TRisk::Medium, true},
    {13, u"Mui", u"14", u"MUI Cache", TRisk::Low, true},
    {14, u"Fileextend", u"15", u"File Extend", TRisk::Medium, true},
    {15, u"Classes", u"16", u"Classes", TRisk::Low, true},
    {16, u"System", u"17", u"System Extentions", TRisk::Low, true},
    {17, u"Openscan", u"18", u"Deep Scan", TRisk::High, false},
}};

// The place of area Number in whatever is kept by area.
constexpr std::size_t AreaIndex(int Number) { return static_cast<std::size_t>(Number) - 1; }

constexpr const TArea &AreaByNumber(int Number) { return Areas[AreaIndex(Number)]; }

} // namespace hivesweep
