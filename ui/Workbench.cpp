#include "ui/Workbench.h"

#include "repair/AppFrame.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view ToolName = u"Hivesweep";

TSettingsPaths SettingsOf(TFolders &Folders) {
  const TDataPaths Paths = DataPathsOf(TAppFrame(Folders));
  return {Paths.MainIniPath, Paths.IgnoreIniPath};
}

// The names of the types of problems, as they stand in every record of a scan.
std::vector<std::u16string> Captions(const TLanguage &Language) {
  std::vector<std::u16string> Names;
  for (std::size_t Label = 0; Label < EnglishLabels.size(); ++Label)
    Names.push_back(
        Language.TextOr(ProblemTypeKey(static_cast<TProblemType>(Label)), EnglishLabels[Label]));
  return Names;
}

TLanguage SuiteLanguage(TPlatform &Platform) {
  TLanguage Language(Platform, ToolName);
  Language.SetLanguage(Language.ReadSuiteLanguage());
  return Language;
}

} // namespace

TWorkbench::TWorkbench(TPlatform Own, std::span<const TScannerRow> Scanners)
    : Platform(std::move(Own)), Language(SuiteLanguage(Platform)), Problems(*Platform.Messages),
      Engine(Platform, Problems, SettingsOf(*Platform.Folders), Scanners, Captions(Language)) {}

TRiskTexts TWorkbench::RiskTexts() const {
  return {Text(LanguageText(u"HighRisk")), Text(LanguageText(u"MidRisk")),
          Text(LanguageText(u"LowRisk"))};
}

} // namespace hivesweep
