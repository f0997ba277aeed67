// Forms and the language files know each other's names.
#include <set>

#include <gtest/gtest.h>

#include "tests/ui/window/TestWindow.h"
#include "ui/CheckForm.h"
#include "ui/FormTexts.h"
#include "ui/IgnoredForm.h"
#include "ui/MainForm.h"
#include "ui/ReportForm.h"
#include "ui/RescueForm.h"

namespace hivesweep {
namespace {

// What the table of texts has for a form.
std::set<std::u16string> KnownKeys(const std::u16string &Form) {
  std::set<std::u16string> Keys;
  for (const TFileText &Text : AllFileTexts())
    if (Text.Section == u"Hivesweep_" + Form)
      Keys.insert(Text.Key + u"=" + Text.English);
  return Keys;
}

// A single text, indented: a file's texts lose the blanks at their front.
bool IsMadeWhenShown(std::u16string_view Component, std::u16string_view Property) {
  return Component == u"Lv_problems" && Property == u"Columns[0].Caption";
}

// What the form shows when it has just been made.
std::set<std::u16string> ShownKeys(TForm &Form) {
  std::set<std::u16string> Keys;
  TFormTexts Texts(Form);
  Texts.VisitTexts(
      [&](std::u16string_view Component, std::u16string_view Property, const std::u16string &Text) {
        if (!Text.empty() && !IsMadeWhenShown(Component, Property))
          Keys.insert(std::u16string(Component).append(u".").append(Property) + u"=" + Text);
      });
  return Keys;
}

// A form that shows a text which no language can change, or lacks one of its texts.
void ExpectSameKeys(TForm &Form) {
  const std::set<std::u16string> Known = KnownKeys(Form.Name());
  const std::set<std::u16string> Shown = ShownKeys(Form);
  for (const std::u16string &Key : Known)
    EXPECT_TRUE(Shown.contains(Key)) << "the form lacks " << ToUtf8(Key);
  for (const std::u16string &Key : Shown)
    EXPECT_TRUE(Known.contains(Key)) << "no language can change " << ToUtf8(Key);
}

TEST(FormTexts, EveryTextOfAFormHasItsKeyAndEveryKeyItsText) {
  TTestBench Bench;
  TLook Look;
  Tfrm_main Main(Look, Bench);
  ExpectSameKeys(Main);
}

TEST(FormTexts, EveryTextOfADialogHasItsKeyAndEveryKeyItsText) {
  TTestBench Bench;
  TTestMain Main;
  Tfrm_check Check(Main, Bench, Main);
  Tfrm_rescue Rescue(Main, Bench);
  Tfrm_ignored Ignored(Main, Bench, Main);
  Tfrm_report Report(Main, Bench, u"", {});
  for (TForm *const Dialog : std::initializer_list<TForm *>{&Check, &Rescue, &Ignored, &Report})
    ExpectSameKeys(*Dialog);
}

} // namespace
} // namespace hivesweep
