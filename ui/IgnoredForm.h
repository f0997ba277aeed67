// The dialog of the problems that the user does not want to see.
#pragma once

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class Tfrm_ignored : public TForm {
public:
  // All must outlive it.
  Tfrm_ignored(TForm &Above, TWorkbench &Bench, TMainView &Main);

private:
  TWorkbench &Bench_;
  TRegistryClean Clean_;
};

} // namespace hivesweep
