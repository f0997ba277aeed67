#include "ui/CheckForm.h"

namespace hivesweep {

Tfrm_check::Tfrm_check(TForm &Above, TWorkbench &Bench, TMainView &Main)
    : TForm(Above.FormLook(), &Above,
            {.Name = u"frm_check", .Caption = u"Scan and Fix", .Size = {400, 300}}, {}),
      Bench_(Bench), Clean_(Bench.Platform) {
  static_cast<void>(Main);
}

} // namespace hivesweep
