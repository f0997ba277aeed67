#include "controls/Hints.h"

#include "controls/Form.h"
#include "controls/Label.h"
#include "controls/Win32.h"

namespace hivesweep {

namespace {
constexpr int WidthUnits = 400; // a longer hint is broken into lines
}

THints::THints(TForm &Form)
    : Form_(Form),
      Window_(CreateWindowExW(0, TOOLTIPS_CLASSW, nullptr, WS_POPUP | TTS_ALWAYSTIP, 0, 0, 0, 0,
                              Form.Handle(), nullptr, GetModuleHandleW(nullptr), nullptr)) {
  SendMessageW(Window_, TTM_SETMAXTIPWIDTH, 0, Form.Look().Scale(WidthUnits));
}

THints::~THints() {
  Clear();
  DestroyWindow(Window_);
}

void THints::Clear() {
  // It has watched the controls' windows, and must stop before they end.
  TOOLINFOW Tool{};
  Tool.cbSize = TTTOOLINFOW_V1_SIZE;
  while (SendMessageW(Window_, TTM_ENUMTOOLSW, 0, reinterpret_cast<LPARAM>(&Tool)))
    SendMessageW(Window_, TTM_DELTOOLW, 0, reinterpret_cast<LPARAM>(&Tool));
}

void THints::Update() {
  Clear();
  for (const auto &Component : Form_.Components()) {
    auto *Control = dynamic_cast<TControl *>(Component.get());
    if (!Control || !Control->Visible() || TextOf(*Control).empty())
      continue;
    const auto *Own = dynamic_cast<TWindowControl *>(Control);
    const TRect &Place = Control->Bounds();
    std::u16string Text = TextOf(*Control);
    TOOLINFOW Tool{};
    Tool.cbSize = TTTOOLINFOW_V1_SIZE;
    Tool.uFlags = TTF_SUBCLASS;
    Tool.hwnd = Own ? Own->Handle() : Control->Parent()->Handle();
    Tool.uId = reinterpret_cast<UINT_PTR>(Control);
    Tool.rect = ToSystem(Own ? TRect{0, 0, Place.Width, Place.Height} : Place);
    Tool.lpszText = Wide(Text.data());
    SendMessageW(Window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&Tool));
  }
}

std::u16string THints::TextOf(const TControl &Control) {
  if (!Control.Hint().empty())
    return Control.Hint();
  const auto *Label = dynamic_cast<const TLabel *>(&Control);
  return Label && Label->Shortened() ? Label->Text() : std::u16string();
}

} // namespace hivesweep
