#include "scanners/ComScanners.h"

#include "platform/Text.h"
#include "scanners/ComRules.h"
#include "scanners/KeyRules.h"
#include "scanners/ScannerRun.h"

namespace hivesweep {

namespace {

// One walk over classes or libraries.
class TComWalk {
public:
  TComWalk(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
           TGroupItems &Group)
      : Run_(Engine, StatusLabel, ProgressBar, Group, 1), Context_{Engine.Disk(), Engine.WinDir,
                                                                   false} {
    Run_.MovesPerName = true;
  }

  std::int32_t OverClasses() {
    return Over(u"CLSID", [this](const TKeyAt &Top, const std::u16string &Name) {
      if (!IsLeftAlone(Name))
        LookAtClass(Run_.Open(Top, Name));
    });
  }

  std::int32_t OverLibraries() {
    return Over(u"TypeLib", [this](const TKeyAt &Top, const std::u16string &Name) {
      ForEachSubkey(Run_.Open(Top, Name), [this](const TKeyAt &Version) {
        ForEachSubkey(Version, [this](const TKeyAt &Locale) { LookAtLocale(Locale); });
      });
    });
  }

private:
  template <typename TLook> std::int32_t Over(std::u16string_view Branch, TLook Look) {
    const TKeyAt Top = Run_.Open(TRegRoot::ClassesRoot, Branch);
    if (!Top)
      return 0;
    Run_.ShowStatus(TProblemType::ActiveX);
    Run_.ForEachName(Run_.SubkeyNames(Top), [&](const std::u16string &Name) { Look(Top, Name); });
    return Run_.Found;
  }

  // Visits what can be opened.
  template <typename TVisit> void ForEachSubkey(const TKeyAt &Parent, TVisit Visit) {
    for (const std::u16string &Name : NamesIn(Parent))
      if (const TKeyAt Subkey = Run_.Open(Parent, Name))
        Visit(Subkey);
  }

  // None when the key could not be opened or not be listed to its end.
  TKeyNames NamesIn(const TKeyAt &At) {
    return At ? Run_.AllSubkeyNames(At).value_or(TKeyNames()) : TKeyNames();
  }

  void Report(TProblemType Label, const TKeyAt &At, std::u16string_view Data,
              std::int32_t ItemKind) {
    std::optional<std::u16string_view> Default;
    if (!Data.empty())
      Default = Data;
    Run_.ReportKey(Label, At.Path, Data, ItemKind, Default);
  }

  // ---- classes --------------------------------------------------------------------
  void LookAtClass(const TKeyAt &Class) {
    for (const std::u16string &Name : NamesIn(Class))
      if (const auto Label = ClassPartLabel(Name))
        LookAtClassPart(Run_.Open(Class, Name), *Label);
  }

  void LookAtClassPart(const TKeyAt &Part, TProblemType Label) {
    const auto Default = Part ? Run_.DefaultText(Part) : std::nullopt;
    if (!Default)
      return;
    const std::u16string_view Text = Trim(*Default);
    if (Text.empty()) {
      if (HoldsOnlyItsDefault(Run_, Part))
        Report(TProblemType::EmptyKey, Part, u"", Run_.Engine.KindKey);
      return;
    }
    const auto Target = DeadClassTarget(Context_, Text);
    if (!Target)
      return;
    // Without its file, a key of no other value is as good as empty.
    if (const auto Counts = Run_.Counts(Part))
      Report(Counts->Values < 2 ? TProblemType::EmptyKey : Label, Part, *Target,
             Run_.Engine.KindKey);
  }

  // ---- type libraries ----------------------------------------------------------------
  void LookAtLocale(const TKeyAt &Locale) {
    const auto Names = Run_.AllSubkeyNames(Locale);
    if (!Names)
      return;
    if (Names->empty())
      return LookAtLastKey(Locale);
    for (const std::u16string &Name : *Names)
      if (AsciiLower(Name) == u"win32")
        LookAtLibrary(Locale, Run_.Open(Locale, Name), Names->size() == 1);
  }

  void LookAtLibrary(const TKeyAt &Locale, const TKeyAt &Library, bool IsOnlySubkey) {
    const auto Default = Library ? Run_.DefaultText(Library) : std::nullopt;
    if (!Default)
      return;
    const bool IsEmpty = Default->empty();
    const std::u16string Data(*Default);
    if (IsEmpty ? !HoldsOnlyItsDefault(Run_, Library) : !IsDeadLibrary(Context_, Data))
      return;
    // A locale that has nothing but this library goes with it.
    bool TakesLocale = false;
    if (IsOnlySubkey) {
      const auto Counts = Run_.Counts(Locale);
      if (!Counts)
        return;
      TakesLocale = Counts->Values == 0;
    }
    Report(TProblemType::ActiveX, TakesLocale ? Locale : Library, Data,
           IsEmpty ? Run_.Engine.KindKey : Run_.Engine.KindValue);
  }

  void LookAtLastKey(const TKeyAt &Key) {
    const auto Default = Run_.DefaultText(Key);
    if (!Default)
      return;
    if (Default->empty()) {
      if (HoldsOnlyItsDefault(Run_, Key))
        Report(TProblemType::EmptyKey, Key, u"", Run_.Engine.KindKey);
    } else if (const auto Path = DeadLibraryFolder(Context_, *Default)) {
      Report(TProblemType::MissingPath, Key, *Path, Run_.Engine.KindValue);
    }
  }

  TScannerRun Run_;
  const TScanContext Context_;
};

} // namespace

std::int32_t ScanClasses(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                         TProgressBar &ProgressBar, TGroupItems &Group) {
  return TComWalk(Engine, StatusLabel, ProgressBar, Group).OverClasses();
}

std::int32_t ScanTypeLibraries(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                               TProgressBar &ProgressBar, TGroupItems &Group) {
  return TComWalk(Engine, StatusLabel, ProgressBar, Group).OverLibraries();
}

} // namespace hivesweep
