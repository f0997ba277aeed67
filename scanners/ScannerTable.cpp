#include "scanners/ScannerTable.h"

#include "scanners/ComScanners.h"
#include "scanners/HistoryScanners.h"
#include "scanners/SoftwareScanners.h"
#include "scanners/ValuePathScanners.h"

namespace hivesweep {

std::span<const TScannerRow> ScannerTable() {
  static const TScannerRow Rows[] = {
      {1, ScanClasses},        {1, ScanTypeLibraries},   {2, ScanAppPaths},
      {4, ScanFonts},          {5, ScanHelpFiles},       {5, ScanHtmlHelpFiles},
      {6, ScanLastVisitedMRU}, {6, ScanOpenSaveMRU},     {7, ScanSharedDlls},
      {9, ScanUserSoftware},   {9, ScanMachineSoftware}, {9, ScanInstallerFolders},
      {9, ScanUninstall}, // notes the names that the next one looks for
      {9, ScanARPCache},       {12, ScanStartup},        {13, ScanMuiCache},
      {16, ScanDrivers32},     {16, ScanFirewallList},
  };
  return Rows;
}

} // namespace hivesweep
