// The program's one main window.
#pragma once

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class Tfrm_main : public TForm, public TMainView {
public:
  // Both must outlive it.
  Tfrm_main(TLook &Look, TWorkbench &Bench);

  void BeginRun() override {}
  void ClearCounts() override {}
  void EndRun(bool Scanned) override { static_cast<void>(Scanned); }
  void SetWelcome(std::u16string_view Text) override { static_cast<void>(Text); }
  void RefreshCounts() override {}

private:
  void FormShow(TComponent &Sender);

  TWorkbench &Bench_;
  TRegistryClean Clean_;
};

} // namespace hivesweep
