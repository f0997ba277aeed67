// The program Hivesweep.
#include <optional>

#include "controls/MessageLoop.h"
#include "scanners/ScannerTable.h"
#include "ui/MainForm.h"

int main() {
  using namespace hivesweep;
  std::optional<TPlatform> Platform = MakeLivePlatform();
  Platform->Messages = MakeWindowMessages();
  TLook Look;
  TWorkbench Bench(std::move(*Platform), ScannerTable());
  Tfrm_main Main(Look, Bench);
  return RunProgram(Main);
}
