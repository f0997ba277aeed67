// What a click on a column's header costs over 100,000 problems, against a plain sort of
// the same texts in the same run.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "engine/Labels.h"
#include "engine/ProblemList.h"
#include "engine/RiskGrading.h"
#include "platform/Platform.h"
#include "platform/Text.h"

using namespace hivesweep;

namespace {

constexpr unsigned ProblemCount = 100'000;

void FillProblems(TListViewManage &Problems) {
  unsigned Seed = 42;
  const auto Random = [&Seed] { return (Seed = Seed * 1664525U + 1013904223U) >> 8; };
  for (const TArea &Area : Areas)
    Problems.AddGroup(Area.GroupName);
  for (unsigned Index = 0; Index < ProblemCount; ++Index) {
    const TArea &Area = Areas[Random() % Areas.size()];
    TItemInfo &Item = *Problems.FindGroup(Area.GroupName)->Add();
    Item.TypeName = EnglishLabels[Random() % EnglishLabels.size()];
    Item.KeyPath = u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\CLSID\\{" + ToDecimal(Random()) + u"-" +
                   ToDecimal(Random()) + u"}\\InprocServer32";
    Item.ImageIndex = ToDecimal(static_cast<unsigned>(Area.Number));
  }
  Problems.BuildView(u"");
  GradeRisks(
      Problems, {}, [](std::u16string_view) { return false; }, [] { return true; });
}

const std::u16string &TextOf(const TItemInfo &Item, TProblemColumn Column) {
  return Column == TProblemColumn::TypeName   ? Item.TypeName
         : Column == TProblemColumn::RiskText ? Item.RiskText
                                              : Item.KeyPath;
}

} // namespace

int main() {
  const TPlatform Platform = MakeLocalServices();
  TListViewManage Problems(*Platform.Messages);
  FillProblems(Problems);
  std::printf("%u problems\n", ProblemCount);
  const struct {
    TProblemColumn Column;
    const char *Name;
  } Columns[] = {{TProblemColumn::TypeName, "by type: sort by a click / plain sort"},
                 {TProblemColumn::RiskText, "by risk: sort by a click / plain sort"},
                 {TProblemColumn::KeyPath, "by key:  sort by a click / plain sort"}};
  for (const auto &Each : Columns) {
    Problems.BuildView(u"");
    std::vector<std::u16string> Texts;
    for (const TItemInfo *Item : Problems.ViewItems())
      Texts.push_back(TextOf(*Item, Each.Column));
    const double Plain = SecondsFor([&] { std::sort(Texts.begin(), Texts.end()); });
    const double Click = SecondsFor([&] { Problems.SortBy(static_cast<int>(Each.Column)); });
    if (Problems.ViewCount() != static_cast<int>(ProblemCount))
      return 3;
    std::printf("  %.0f ms, %.0f ms\n", 1000 * Click, 1000 * Plain);
    PrintRatio(Each.Name, Click / Plain, "goal: at most 2");
  }
}
