#include "controls/WindowMap.h"

#include <unordered_map>

#include "controls/MessageLoop.h"

namespace hivesweep {

namespace {

struct TEntry {
  TWindowControl *Object;
  WNDPROC Previous;
};

std::unordered_map<HWND, TEntry> &Entries() {
  static std::unordered_map<HWND, TEntry> Map;
  return Map;
}

LRESULT CALLBACK WindowProcedure(HWND Window, UINT Id, WPARAM WParam, LPARAM LParam) {
  const auto Found = Entries().find(Window);
  if (Found == Entries().end()) // it is being made, or has lost its object
    return DefWindowProcW(Window, Id, WParam, LParam);
  const TMessage Message{Id, WParam, LParam};
  try {
    if (const TAnswer Answer = Found->second.Object->Receive(Message))
      return static_cast<LRESULT>(*Answer);
  } catch (...) {
    // The system's code is on the stack, through which nothing may be thrown.
    KeepForLoop(std::current_exception());
    return 0;
  }
  return static_cast<LRESULT>(TWindowMap::CallPrevious(Window, Message));
}

} // namespace

const wchar_t *TWindowMap::PlainClass() {
  static const wchar_t Name[] = L"HivesweepWindow";
  static const ATOM Registered = [] {
    const INITCOMMONCONTROLSEX Wanted{sizeof Wanted, ICC_LISTVIEW_CLASSES | ICC_BAR_CLASSES};
    InitCommonControlsEx(&Wanted);
    WNDCLASSEXW Class{};
    Class.cbSize = sizeof Class;
    Class.style = CS_DBLCLKS;
    Class.lpfnWndProc = WindowProcedure;
    Class.hInstance = GetModuleHandleW(nullptr);
    Class.hCursor = LoadCursorW(nullptr, MAKEINTRESOURCEW(32512)); // the arrow
    Class.hIcon = LoadIconW(Class.hInstance, L"APP"); // the program's own, if it has one
    Class.hIconSm = static_cast<HICON>(LoadImageW(Class.hInstance, L"APP", IMAGE_ICON,
                                                  GetSystemMetrics(SM_CXSMICON),
                                                  GetSystemMetrics(SM_CYSMICON), LR_SHARED));
    Class.lpszClassName = Name;
    return RegisterClassExW(&Class);
  }();
  static_cast<void>(Registered);
  return Name;
}

void TWindowMap::Attach(HWND Window, TWindowControl &Object) {
  const auto Previous = reinterpret_cast<WNDPROC>(GetWindowLongPtrW(Window, GWLP_WNDPROC));
  Entries()[Window] = {&Object, Previous == WindowProcedure ? DefWindowProcW : Previous};
  SetWindowLongPtrW(Window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(WindowProcedure));
}

void TWindowMap::Detach(HWND Window) {
  const auto Found = Entries().find(Window);
  if (Found == Entries().end())
    return;
  SetWindowLongPtrW(Window, GWLP_WNDPROC, reinterpret_cast<LONG_PTR>(Found->second.Previous));
  Entries().erase(Found);
}

TWindowControl *TWindowMap::Find(HWND Window) {
  const auto Found = Entries().find(Window);
  return Found == Entries().end() ? nullptr : Found->second.Object;
}

std::intptr_t TWindowMap::CallPrevious(HWND Window, const TMessage &Message) {
  // Looked up anew: handling the message may have ended the window.
  const auto Found = Entries().find(Window);
  const WNDPROC Previous = Found == Entries().end() ? DefWindowProcW : Found->second.Previous;
  return CallWindowProcW(Previous, Window, Message.Id, Message.WParam, Message.LParam);
}

} // namespace hivesweep
