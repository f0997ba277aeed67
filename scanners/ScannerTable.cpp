#include "scanners/ScannerTable.h"

#include "scanners/ValuePathScanners.h"

namespace hivesweep {

std::span<const TScannerRow> ScannerTable() {
  static const TScannerRow Rows[] = {
      {2, ScanAppPaths},      {4, ScanFonts},      {5, ScanHelpFiles},
      {5, ScanHtmlHelpFiles}, {7, ScanSharedDlls}, {9, ScanInstallerFolders},
      {12, ScanStartup},      {13, ScanMuiCache},  {16, ScanDrivers32},
      {16, ScanFirewallList},
  };
  return Rows;
}

} // namespace hivesweep
