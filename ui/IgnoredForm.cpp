#include "ui/IgnoredForm.h"

namespace hivesweep {

Tfrm_ignored::Tfrm_ignored(TForm &Above, TWorkbench &Bench, TMainView &Main)
    : TForm(Above.FormLook(), &Above,
            {.Name = u"frm_ignored", .Caption = u"Ignored Problems", .Size = {400, 300}}, {}),
      Bench_(Bench), Clean_(Bench.Platform) {
  static_cast<void>(Main);
}

} // namespace hivesweep
