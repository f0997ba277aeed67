#include "scanners/ScannerTable.h"

#include "scanners/ComScanners.h"
#include "scanners/DeepScan.h"
#include "scanners/FileTypeScanners.h"
#include "scanners/HistoryScanners.h"
#include "scanners/ShellScanners.h"
#include "scanners/SoftwareScanners.h"
#include "scanners/ValuePathScanners.h"

namespace hivesweep {

std::span<const TScannerRow> ScannerTable() {
  static const TScannerRow Rows[] = {
      {1, ScanClasses},
      {1, ScanTypeLibraries},
      {2, ScanAppPaths},
      {2, ScanApplications},
      {3, ScanFileTypes},
      {3, ScanExtensions},
      {4, ScanFonts},
      {5, ScanHelpFiles},
      {5, ScanHtmlHelpFiles},
      {6, ScanLastVisitedMRU},
      {6, ScanOpenSaveMRU},
      {7, ScanSharedDlls},
      {8, ScanShortcutFiles},
      {8, ScanShellFolders},
      {9, ScanUserSoftware},
      {9, ScanMachineSoftware},
      {9, ScanInstallerFolders},
      {9, ScanUninstall}, // notes the names that the next one looks for
      {9, ScanARPCache},
      {10, ScanSounds},
      {11, ScanStartMenu},
      {12, ScanStartup},
      {13, ScanMuiCache},
      {14, ScanExplorerExtensions},
      {15, ScanMachineClasses},
      {16, ScanDrivers32},
      {16, ScanFirewallList},
      {17, ScanDeepFileSystem},
      {17, ScanDeepUsers},
  };
  return Rows;
}

} // namespace hivesweep
