// The texts that name the types of problems, by their index in the engine's list.
#pragma once

#include <array>
#include <string_view>

namespace hivesweep {

enum class TProblemType : std::size_t {
  MissingPath = 0,
  EmptyKey = 1,
  ActiveX = 2,
  ApplicationIcon = 3,
  HelpFiles = 4,
  Installer = 5,
  History = 6,
  MruCache = 7,
  Software = 8,
  SharedDll = 9,
  Uninstaller = 10,
  InvalidExtensions = 11,
  UnusedExtensions = 12,
  Font = 13,
  Shortcuts = 14,
  Sound = 15,
  Startup = 16,
  StartMenu = 17,
  MuiHistory = 18,
  DeepScan = 19,
  Firewall = 20,
  ShortcutFile = 21,
};

// English. "Histrory" is spelled as users and language files know it.
inline constexpr std::array<std::u16string_view, 22> EnglishLabels = {
    u"Nonexistent File Path",
    u"Empty Registry Key",
    u"ActiveX and Class Issues",
    u"Application Icon",
    u"Missing Help Files",
    u"Invalid Installer",
    u"Obsolete Histrory",
    u"MRU Cache",
    u"Obsolete Software",
    u"Missing Shared DLL",
    u"Invalid Uninstaller",
    u"Invalid File Extensions",
    u"Unused File Extensions",
    u"Invalid Font",
    u"Invalid Shortcuts",
    u"Invalid Sound",
    u"Startup Issue",
    u"Start Menu Issue",
    u"MUI History",
    u"Deep Scan",
    u"Firewall Issues",
    u"Invalid Shortcut File",
};

} // namespace hivesweep
