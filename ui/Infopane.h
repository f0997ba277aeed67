// The program's about box, home page and manual.
#pragma once

#include "controls/Form.h"
#include "ui/Workbench.h"

namespace hivesweep {

void ShowAbout(const TForm &Above, TWorkbench &Bench);
void NavigateToHomePage(const TForm &Above, TWorkbench &Bench);
void OpenManual(const TForm &Above, TWorkbench &Bench);

} // namespace hivesweep
