#include "scanners/ScannerTable.h"

#include "scanners/ValuePathScanners.h"

namespace hivesweep {

std::span<const TScannerRow> ScannerTable() {
  static const TScannerRow Rows[] = {
      {2, u"ScanAppPaths", ScanAppPaths},     {4, u"ScanFonts", ScanFonts},
      {5, u"ScanHelpFiles", ScanHelpFiles},   {5, u"ScanHtmlHelpFiles", ScanHtmlHelpFiles},
      {7, u"ScanSharedDlls", ScanSharedDlls}, {9, u"ScanInstallerFolders", ScanInstallerFolders},
      {12, u"ScanStartup", ScanStartup},      {13, u"ScanMuiCache", ScanMuiCache},
      {16, u"ScanDrivers32", ScanDrivers32},  {16, u"ScanFirewallList", ScanFirewallList},
  };
  return Rows;
}

} // namespace hivesweep
