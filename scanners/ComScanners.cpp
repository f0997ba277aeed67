#include "scanners/ComScanners.h"

#include "platform/Text.h"
#include "scanners/ComRules.h"
#include "scanners/KeyScan.h"

namespace hivesweep {

namespace {

constexpr TKeyScan Classes = {1, TLabel::ActiveX, TRegRoot::ClassesRoot, u"CLSID\\"};
constexpr TKeyScan TypeLibraries = {1, TLabel::ActiveX, TRegRoot::ClassesRoot, u"TypeLib\\"};

// One walk over classes or libraries.
class TComWalk {
public:
  TComWalk(const TKeyScan &Scan, TScanRegistry &Engine, TStatusLabel &StatusLabel,
           TProgressBar &ProgressBar, TGroupItems &Group)
      : Engine_(Engine), ProgressBar_(ProgressBar),
        Walk_(Scan, Engine, StatusLabel, Group), Context_{Engine.Disk(), Engine.WinDir, false} {}

  std::int32_t OverClasses() {
    return Walk_.Run([this](const std::u16string &Name) {
      ProgressBar_.Advance();
      if (!IsLeftAlone(Name))
        LookAtClass(Walk_.Open(Name));
    });
  }

  std::int32_t OverLibraries() {
    return Walk_.Run([this](const std::u16string &Name) {
      ProgressBar_.Advance();
      ForEachSubkey(Walk_.Open(Name), [this](const TKeyAt &Version) {
        ForEachSubkey(Version, [this](const TKeyAt &Locale) { LookAtLocale(Locale); });
      });
    });
  }

private:
  using TNames = std::vector<std::u16string>;

  // Visits what can be opened.
  template <typename TVisit> void ForEachSubkey(const TKeyAt &Parent, TVisit Visit) {
    const auto Names = Parent.Key ? Walk_.SubkeyNames(Parent) : std::nullopt;
    for (const std::u16string &Name : Names.value_or(TNames()))
      if (const TKeyAt Subkey = Walk_.Open(Parent, Name); Subkey.Key)
        Visit(Subkey);
  }

  // ---- classes --------------------------------------------------------------------
  void LookAtClass(const TKeyAt &Class) {
    const auto Names = Class.Key ? Walk_.SubkeyNames(Class) : std::nullopt;
    for (const std::u16string &Name : Names.value_or(TNames()))
      if (const auto Label = ClassPartLabel(Name))
        LookAtClassPart(Walk_.Open(Class, Name), *Label);
  }

  void LookAtClassPart(const TKeyAt &Part, TLabel Label) {
    const auto Default = Part.Key ? Walk_.DefaultText(Part) : std::nullopt;
    if (!Default)
      return;
    const std::u16string_view Text = Trim(*Default);
    if (Text.empty()) {
      if (Walk_.HoldsOnlyItsDefault(Part))
        Walk_.ReportKey(TLabel::EmptyKey, Part, u"", Engine_.KindKey);
      return;
    }
    const auto Target = DeadClassTarget(Context_, Text);
    if (!Target)
      return;
    // Without its file, a key of no other value is as good as empty.
    if (const auto Counts = Walk_.Counts(Part))
      Walk_.ReportKey(Counts->Values < 2 ? TLabel::EmptyKey : Label, Part, *Target,
                      Engine_.KindKey);
  }

  // ---- type libraries ----------------------------------------------------------------
  void LookAtLocale(const TKeyAt &Locale) {
    const auto Names = Walk_.SubkeyNames(Locale);
    if (!Names)
      return;
    if (Names->empty())
      return LookAtLastKey(Locale);
    for (const std::u16string &Name : *Names)
      if (AsciiLower(Name) == u"win32")
        LookAtLibrary(Locale, Walk_.Open(Locale, Name), Names->size() == 1);
  }

  void LookAtLibrary(const TKeyAt &Locale, const TKeyAt &Library, bool IsOnlySubkey) {
    const auto Default = Library.Key ? Walk_.DefaultText(Library) : std::nullopt;
    if (!Default)
      return;
    const bool IsEmpty = Default->empty();
    const std::u16string Data(*Default);
    if (IsEmpty ? !Walk_.HoldsOnlyItsDefault(Library) : !IsDeadLibrary(Context_, Data))
      return;
    // A locale that has nothing but this library goes with it.
    bool TakesLocale = false;
    if (IsOnlySubkey) {
      const auto Counts = Walk_.Counts(Locale);
      if (!Counts)
        return;
      TakesLocale = Counts->Values == 0;
    }
    Walk_.ReportKey(TLabel::ActiveX, TakesLocale ? Locale : Library, Data,
                    IsEmpty ? Engine_.KindKey : Engine_.KindValue);
  }

  void LookAtLastKey(const TKeyAt &Key) {
    const auto Default = Walk_.DefaultText(Key);
    if (!Default)
      return;
    if (Default->empty()) {
      if (Walk_.HoldsOnlyItsDefault(Key))
        Walk_.ReportKey(TLabel::EmptyKey, Key, u"", Engine_.KindKey);
    } else if (const auto Path = DeadLibraryFolder(Context_, *Default)) {
      Walk_.ReportKey(TLabel::MissingPath, Key, *Path, Engine_.KindValue);
    }
  }

  TScanRegistry &Engine_;
  TProgressBar &ProgressBar_;
  TKeyWalk Walk_;
  const TScanContext Context_;
};

} // namespace

std::int32_t ScanClasses(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                         TProgressBar &ProgressBar, TGroupItems &Group) {
  return TComWalk(Classes, Engine, StatusLabel, ProgressBar, Group).OverClasses();
}

std::int32_t ScanTypeLibraries(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                               TProgressBar &ProgressBar, TGroupItems &Group) {
  return TComWalk(TypeLibraries, Engine, StatusLabel, ProgressBar, Group).OverLibraries();
}

} // namespace hivesweep
