#include "ui/MainForm.h"

#include "ui/FormTexts.h"

namespace hivesweep {

namespace {

TFormTable MainTable() {
  return {.Name = u"frm_main",
          .Caption = u"Hivesweep",
          .Size = {780, 560},
          .Resizable = true,
          .Dialog = false,
          .On = {{TEvent::Show, u"FormShow"}}};
}

} // namespace

Tfrm_main::Tfrm_main(TLook &Look, TWorkbench &Bench)
    : TForm(Look, nullptr, MainTable(), {Handler(u"FormShow", this, &Tfrm_main::FormShow)}),
      Bench_(Bench), Clean_(Bench.Platform) {}

void Tfrm_main::FormShow(TComponent &Sender) {
  static_cast<void>(Sender);
  Translate(Bench_.Language, *this);
}

} // namespace hivesweep
