#include "ui/RescueForm.h"

namespace hivesweep {

Tfrm_rescue::Tfrm_rescue(TForm &Above, TWorkbench &Bench)
    : TForm(Above.FormLook(), &Above,
            {.Name = u"frm_rescue", .Caption = u"Restore", .Size = {400, 300}}, {}),
      Bench_(Bench), Clean_(Bench.Platform) {}

} // namespace hivesweep
