#include "ui/Infopane.h"

#include "platform/Text.h"
#include "platform/win32/Win32.h"
#include "ui/FormTexts.h"

namespace hivesweep {

namespace {

std::u16string BesideProgram(TWorkbench &Bench, std::u16string_view Name) {
  return Bench.Platform.Folders->Program().append(Name);
}

struct TSpoken {
  std::u16string_view Language;
  LANGID Id;
};
// The languages of the library that is shipped.
constexpr TSpoken Spoken[] = {{u"English", MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US)},
                              {u"German", MAKELANGID(LANG_GERMAN, SUBLANG_GERMAN)}};

// While it lives, this thread finds the resources of a library in the program's language,
// which need not be the system's. For a language that is not spoken there all stays.
class TResourceLanguage {
public:
  explicit TResourceLanguage(std::u16string_view Language) {
    for (const TSpoken &Each : Spoken)
      if (EqualNoCase(Language, Each.Language))
        Set(Each.Id, MAKELCID(Each.Id, SORT_DEFAULT));
  }
  TResourceLanguage(const TResourceLanguage &) = delete;
  TResourceLanguage &operator=(const TResourceLanguage &) = delete;
  ~TResourceLanguage() { Set(LanguageBefore_, LocaleBefore_); }

private:
  using TGetLanguage = LANGID(WINAPI *)();
  using TSetLanguage = LANGID(WINAPI *)(LANGID);

  // Since Windows Vista it is a setting of its own, before, the thread's locale.
  void Set(LANGID Language, LCID Locale) const {
    SetThreadLocale(Locale);
    if (GetLanguage_ && SetLanguage_)
      SetLanguage_(Language);
  }

  const TGetLanguage GetLanguage_ =
      reinterpret_cast<TGetLanguage>(FindFunction(L"kernel32.dll", "GetThreadUILanguage"));
  const TSetLanguage SetLanguage_ =
      reinterpret_cast<TSetLanguage>(FindFunction(L"kernel32.dll", "SetThreadUILanguage"));
  const LCID LocaleBefore_ = GetThreadLocale();
  const LANGID LanguageBefore_ = GetLanguage_ ? GetLanguage_() : LANGID{0};
};

std::u16string LoadedLanguage(const TLanguage &Language) {
  const std::int32_t Index = Language.CurrentIndex();
  return Index < 0 ? u"" : Language.LanguageNames()[static_cast<std::size_t>(Index)];
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
  if (Call) {
    const TResourceLanguage Scope(LoadedLanguage(Bench.Language));
    Call();
  }
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
