// The program Hivesweep.
#include "controls/MessageLoop.h"
#include "scanners/ScannerTable.h"
#include "ui/LastResort.h"
#include "ui/MainForm.h"
#include "ui/Rights.h"
#include "ui/SingleInstance.h"

namespace hivesweep {

namespace {

int RunWindow() {
  TPlatform Platform = std::move(*MakeLivePlatform());
  Platform.Messages = MakeWindowMessages();
  TLook Look;
  TWorkbench Bench(std::move(Platform), ScannerTable());
  Bench.LimitedRights = !HasMachineRights();
  Tfrm_main Main(Look, Bench);
  const TMainWindow Heard(Main.Handle());
  return RunProgram(Main);
}

} // namespace

} // namespace hivesweep

int main() {
  using namespace hivesweep;
  if (!InitSingleInstance())
    return 0;
  const int Code = TellErrors(RunWindow);
  DoneSingleInstance();
  return Code;
}
