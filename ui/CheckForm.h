// The dialog through which every scan and every fix runs.
#pragma once

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class Tfrm_check : public TForm {
public:
  // All must outlive it.
  Tfrm_check(TForm &Above, TWorkbench &Bench, TMainView &Main);

private:
  TWorkbench &Bench_;
  TRegistryClean Clean_;
};

} // namespace hivesweep
