// The program's about box, home page and manual. The first two are a library's beside the
// program, Infopane.dll, so that a product built on this program brings its own.
#pragma once

#include "controls/Form.h"
#include "ui/Workbench.h"

namespace hivesweep {

// Both load the library for one call. When it is missing, or has no such function, a plain
// message tells the version, and the manual is opened.
void ShowAbout(const TForm &Above, TWorkbench &Bench);
void NavigateToHomePage(const TForm &Above, TWorkbench &Bench);

// Opens the manual; tells when there is none, or nothing that opens it.
void OpenManual(const TForm &Above, TWorkbench &Bench);

} // namespace hivesweep
