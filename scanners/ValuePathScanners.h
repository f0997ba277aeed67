// The ten scanners that follow a value to a file or folder: application paths, help
// files, installer folders, the MUI cache, shared DLLs, multimedia drivers, fonts,
// startup entries and the firewall's list.
#pragma once

#include "engine/ScanRegistry.h"

namespace hivesweep {

extern const TScanner ScanAppPaths;
extern const TScanner ScanHelpFiles;
extern const TScanner ScanHtmlHelpFiles;
extern const TScanner ScanInstallerFolders;
extern const TScanner ScanMuiCache;
extern const TScanner ScanSharedDlls;
extern const TScanner ScanDrivers32;
extern const TScanner ScanFonts;
extern const TScanner ScanStartup;
extern const TScanner ScanFirewallList;

} // namespace hivesweep
