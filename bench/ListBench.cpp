// What the table of problems costs with 100,000 rows, in the real window: to draw a page
// of them, against a page of 100; to open them, and to sort them by a click, each against a
// plain sort of their texts.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "controls/ListView.h"
#include "controls/Win32.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/MainForm.h"

using namespace hivesweep;

namespace {

constexpr int Pages = 50;

void Fill(TTestBench &Bench, int Count) {
  Bench.Problems.Clear();
  unsigned Seed = 42;
  for (int Index = 0; Index < Count; ++Index) {
    Seed = Seed * 1664525U + 1013904223U;
    TItemInfo &Item = Bench.AddProblem(static_cast<int>(Seed >> 16) % 17 + 1,
                                       u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\CLSID\\{" +
                                           ToDecimal(Seed) + u"}\\InprocServer32",
                                       u"ActiveX and Class Issues");
    Item.RiskText = u"High-Risk";
    Item.RiskImage = 18 + static_cast<int>(Seed >> 8) % 3;
  }
}

// Draws the page again and again.
double PageSeconds(const TListView &List) {
  return SecondsFor([&] {
    for (int Page = 0; Page < Pages; ++Page) {
      InvalidateRect(List.Handle(), nullptr, FALSE);
      UpdateWindow(List.Handle());
    }
  });
}

// Jumps between both ends of the list.
double JumpSeconds(TListView &List) {
  return SecondsFor([&] {
    for (int Page = 0; Page < Pages; ++Page) {
      List.Select(Page % 2 == 0 ? List.RowCount() - 1 : 0);
      UpdateWindow(List.Handle());
    }
  });
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): what can't be measured ends it
int main() {
  TTestBench Bench;
  TLook Look;
  Tfrm_main Main(Look, Bench);
  Main.Show();
  auto &List = Main.Find<TListView>(u"Lv_problems");

  Fill(Bench, 100);
  Main.EndRun(true);
  PageSeconds(List); // what the system does once
  const double Few = PageSeconds(List);
  const double FewJumps = JumpSeconds(List);

  Fill(Bench, 100'000);
  std::vector<std::u16string> Texts;
  for (const TArea &Area : Areas)
    if (const TGroupItems *Group = Bench.Problems.FindGroup(Area.GroupName))
      for (int Index = 0; Index < Group->Count(); ++Index)
        Texts.push_back(Group->Get(Index)->KeyPath);
  const double Open = SecondsFor([&] { Main.EndRun(true); });
  const double Many = PageSeconds(List);
  const double ManyJumps = JumpSeconds(List);
  const double Plain = SecondsFor([&] { std::sort(Texts.begin(), Texts.end()); });
  const double Click = SecondsFor([&] {
    List.Call<TColumnHandler>(TEvent::ColumnClick, List, 2);
    UpdateWindow(List.Handle());
  });
  if (List.RowCount() != 100'000)
    return 3;
  std::printf("100,000 rows: open %.0f ms, a page %.1f ms, a click on a header %.0f ms\n",
              1000 * Open, 1000 * Many / Pages, 1000 * Click);
  PrintRatio("a page of 100,000 rows / of 100 rows", Many / Few, "goal: about 1");
  PrintRatio("a jump to the end of 100,000 rows / of 100 rows", ManyJumps / FewJumps,
             "no goal: Wine's list walks its rows");
  PrintRatio("sort by a click on a header / plain sort", Click / Plain, "goal: at most 2");
}
