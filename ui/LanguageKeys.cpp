#include "ui/LanguageKeys.h"

#include "platform/ErrorTexts.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view SingleTexts = u"Hivesweep_M";
constexpr std::u16string_view MainForm = u"Hivesweep_frm_main";

std::u16string Numbered(std::u16string_view Front, std::size_t Number) {
  return std::u16string(Front).append(ToDecimal(Number));
}

void AddSingleTexts(std::vector<TFileText> &Out) {
  const auto Add = [&](std::u16string_view Key, std::u16string_view English) {
    Out.push_back({std::u16string(SingleTexts), std::u16string(Key), std::u16string(English)});
  };
  for (const TLanguageText &Text : LanguageTexts)
    Add(Text.Key, Text.English);
  for (const TLanguageText &Text : AreaDescriptions)
    Add(Text.Key, Text.English);
  for (const TErrorText &Text : ErrorTexts())
    Add(Text.Key, Text.English);
  for (const TSystemErrorText &Error : SystemErrorTexts)
    Add(Error.Text.Key, Error.Text.English);
  for (const TArea &Area : Areas)
    Add(AreaCaptionKey(Area), Area.Caption);
  for (std::size_t Label = 0; Label < EnglishLabels.size(); ++Label)
    Add(ProblemTypeKey(static_cast<TProblemType>(Label)), EnglishLabels[Label]);
}

void AddFormTexts(std::vector<TFileText> &Out) {
  // Categories 2 to 18 are the areas, in the pane and in the menu.
  for (const std::u16string_view Family : {u"Label_", u"dxb_"})
    for (const TArea &Area : Areas)
      Out.push_back({std::u16string(MainForm),
                     std::u16string(Family).append(Area.GroupName).append(u".Caption"),
                     std::u16string(Area.Caption)});
  for (const TFormText &Text : FormTexts)
    Out.push_back({u"Hivesweep_" + std::u16string(Text.Form), std::u16string(Text.Key),
                   std::u16string(Text.English)});
}

} // namespace

std::u16string AreaCaptionKey(const TArea &Area) {
  return Numbered(u"Lv_checkitem", AreaIndex(Area.Number));
}

std::u16string ProblemTypeKey(TProblemType Label) {
  return Numbered(u"ProblemType", static_cast<std::size_t>(Label));
}

std::vector<TFileText> AllFileTexts() {
  std::vector<TFileText> Out;
  AddSingleTexts(Out);
  AddFormTexts(Out);
  return Out;
}

} // namespace hivesweep
