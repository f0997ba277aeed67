#include "ui/Infopane.h"

#include "platform/Text.h"
#include "platform/win32/Win32.h"
#include "ui/FormTexts.h"

namespace hivesweep {

namespace {

std::u16string BesideProgram(TWorkbench &Bench, std::u16string_view Name) {
  return Bench.Platform.Folders->Program().append(Name);
}

// Calls a function without parameters. False when there is none.
bool CallLibrary(TWorkbench &Bench, const char *Function) {
  // By its whole path: a library of that name in another folder is none of ours. A file
  // that is no library is an answer and not the system's affair to tell.
  const UINT Before = SetErrorMode(SEM_FAILCRITICALERRORS);
  const HMODULE Library = LoadLibraryExW(Wide(BesideProgram(Bench, u"Infopane.dll")), nullptr,
                                         LOAD_WITH_ALTERED_SEARCH_PATH);
  SetErrorMode(Before);
  if (!Library)
    return false;
  const auto Call = reinterpret_cast<void (*)()>(GetProcAddress(Library, Function));
  if (Call)
    Call();
  FreeLibrary(Library);
  return Call != nullptr;
}

} // namespace

void ShowAbout(const TForm &Above, TWorkbench &Bench) {
  if (!CallLibrary(Bench, "ShowAbout"))
    ShowMessage(&Above, Bench.Text(LanguageText(u"AboutMessage")) + u" " HIVESWEEP_VERSION u".",
                Bench.Text(LanguageText(u"Title")), TMessageKind::Information);
}

void NavigateToHomePage(const TForm &Above, TWorkbench &Bench) {
  if (!CallLibrary(Bench, "NavigateToHomePage"))
    OpenManual(Above, Bench);
}

void OpenManual(const TForm &Above, TWorkbench &Bench) {
  constexpr std::u16string_view Page = HIVESWEEP_MANUAL_PAGE;
  const std::u16string Address = Contains(Page, u':') ? std::u16string(Page) // and no file's name
                                                      : BesideProgram(Bench, Page);
  if (!Bench.Platform.Shell->Open(Address, u""))
    Tell(Above, Bench.Language, LanguageText(u"HelpMissing"), TMessageKind::Warning);
}

} // namespace hivesweep
