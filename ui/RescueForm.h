// The dialog of the backups.
#pragma once

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class Tfrm_rescue : public TForm {
public:
  // All must outlive it.
  Tfrm_rescue(TForm &Above, TWorkbench &Bench);

private:
  TWorkbench &Bench_;
  TRegistryClean Clean_;
};

} // namespace hivesweep
