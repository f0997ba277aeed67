#include "controls/Hints.h"

#include "controls/Form.h"
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
    if (!Control || !Control->Visible() || !Control->CanHint())
      continue;
    const auto *Own = dynamic_cast<TWindowControl *>(Control);
    const TRect &Place = Control->Bounds();
    TOOLINFOW Tool{};
    Tool.cbSize = TTTOOLINFOW_V1_SIZE;
    Tool.uFlags = TTF_SUBCLASS;
    Tool.hwnd = Own ? Own->Handle() : Control->Parent()->Handle();
    Tool.uId = reinterpret_cast<UINT_PTR>(Control);
    Tool.rect = ToSystem(Own ? TRect{0, 0, Place.Width, Place.Height} : Place);
    Tool.lpszText = LPSTR_TEXTCALLBACKW;
    SendMessageW(Window_, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&Tool));
  }
}

bool THints::Answer(const TMessage &Message) {
  auto *Notice = reinterpret_cast<NMHDR *>(Message.LParam);
  // Lists have such windows, too, and ask in their own way.
  if (Notice->code != TTN_GETDISPINFOW || Notice->hwndFrom != Window_)
    return false;
  static std::u16string Text; // the system reads it after the answer
  Text = reinterpret_cast<const TControl *>(Notice->idFrom)->ShownHint();
  reinterpret_cast<NMTTDISPINFOW *>(Notice)->lpszText = Wide(Text.data());
  return true;
}

} // namespace hivesweep
