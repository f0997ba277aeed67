#include "ui/RegistryEditor.h"

#include <functional>

#include "platform/win32/Win32.h"
#include "ui/Foreground.h"
#include "ui/RegistryEditorKey.h"

namespace hivesweep {

namespace {

constexpr wchar_t EditorClass[] = L"RegEdit_RegEdit";
constexpr std::u16string_view EditorProgram = u"regedit.exe";

constexpr DWORD StartPatience = 5'000; // milliseconds
constexpr DWORD EndPatience = 2'000;
constexpr std::uint32_t Nap = 20;

// ---- which Windows ------------------------------------------------------------------------

struct TVersion {
  DWORD Major = 5;
  DWORD Minor = 0;
  DWORD Build = 0;
  auto operator<=>(const TVersion &) const = default; // NOLINT(modernize-use-nullptr)
};

// The system's own, whatever it tells a program that it takes for an old one.
TVersion SystemVersion() {
  using TRtlGetVersion = LONG(WINAPI *)(OSVERSIONINFOW *);
  OSVERSIONINFOW Info = {};
  Info.dwOSVersionInfoSize = sizeof Info;
  const auto RtlGetVersion =
      reinterpret_cast<TRtlGetVersion>(FindFunction(L"ntdll.dll", "RtlGetVersion"));
  if (!RtlGetVersion || RtlGetVersion(&Info) != 0)
    return {};
  return {Info.dwMajorVersion, Info.dwMinorVersion, Info.dwBuildNumber};
}

// In front of a path when the editor has never stored one; empty where it needs none.
// Today's editors don't, so that nobody has to know their language; nor does Wine's.
std::u16string_view DefaultPrefix(const TVersion &Version) {
  if (Version >= TVersion{10, 0, 17763} || FindFunction(L"ntdll.dll", "wine_get_version"))
    return {};
  return Version.Major >= 6 ? u"Computer\\" : u"My Computer\\";
}

// Since Windows XP "/m" starts an editor beside the one that runs; before, it is taken for
// the name of a file.
bool KnowsAnother(const TVersion &Version) { return Version >= TVersion{5, 1, 0}; }

// ---- editors that run -----------------------------------------------------------------------

HWND FirstEditor() { return FindWindowExW(nullptr, nullptr, EditorClass, nullptr); }

std::size_t EditorCount() {
  std::size_t Count = 0;
  for (HWND Window = FirstEditor(); Window;
       Window = FindWindowExW(nullptr, Window, EditorClass, nullptr))
    ++Count;
  return Count;
}

// Handles messages until Done, or for so long.
bool WaitUntil(TPlatform &Platform, DWORD Patience, const std::function<bool()> &Done) {
  for (const DWORD Start = GetTickCount(); !Done(); Platform.Clock->Pause(Nap)) {
    if (GetTickCount() - Start > Patience)
      return false;
    Platform.Messages->Pump();
  }
  return true;
}

// False when there can be no other editor beside the one that runs.
bool StartAnother(TPlatform &Platform) {
  const std::size_t Before = EditorCount();
  const std::unique_ptr<TProcess> Process = Platform.Shell->Start(EditorProgram, u"/m");
  if (!Process)
    return false;
  bool Ended = false;
  WaitUntil(Platform, StartPatience, [&] {
    Ended = Process->WaitForEnd(0);
    return Ended || EditorCount() > Before;
  });
  return !Ended || EditorCount() > Before;
}

// Closes the editor's window as its user would. One that shows a dialog is left alone: what
// was typed there would be lost.
bool EndEditor(TPlatform &Platform, HWND Editor) {
  if (!IsWindowEnabled(Editor))
    return false;
  DWORD ProcessId = 0;
  GetWindowThreadProcessId(Editor, &ProcessId);
  // It stores its last key when its window goes, which is some time before the process does.
  const TFileHandle Process = [ProcessId] {
    const HANDLE Opened = OpenProcess(SYNCHRONIZE, FALSE, ProcessId);
    return TFileHandle(Opened ? Opened : INVALID_HANDLE_VALUE);
  }();
  PostMessageW(Editor, WM_CLOSE, 0, 0);
  return WaitUntil(Platform, EndPatience, [&] {
    return Process.IsOpen() ? WaitForSingleObject(Process.Get(), 0) == WAIT_OBJECT_0
                            : !IsWindow(Editor);
  });
}

// ---- the way to the key ---------------------------------------------------------------------

bool StartAt(TPlatform &Platform, const std::u16string &KeyPath) {
  const TVersion Version = SystemVersion();
  const auto Store = [&] {
    // An editor that shows another key than this one is still better than none.
    StoreLastKey(*Platform.Registry, KeyPath, DefaultPrefix(Version));
  };
  Store();
  if (const HWND Running = FirstEditor()) {
    if (KnowsAnother(Version) && StartAnother(Platform))
      return true;
    if (!EndEditor(Platform, Running)) {
      ForceForeground(GetLastActivePopup(Running));
      return true;
    }
    Store(); // over what the other one stored at its end
  }
  return Platform.Shell->Open(EditorProgram, u"");
}

} // namespace

bool OpenInRegistryEditor(TPlatform &Platform, std::u16string_view KeyPath) {
  static bool Opening = false;
  if (Opening)
    return true;
  struct TOpening {
    TOpening() { Opening = true; }
    ~TOpening() { Opening = false; }
  } const Guard;
  return StartAt(Platform, NearestKey(*Platform.Registry, KeyPath));
}

} // namespace hivesweep
