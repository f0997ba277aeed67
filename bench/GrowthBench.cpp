// What must not grow faster than its input: the rules over one huge text, and the time that
// each of many deleted problems takes.
#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>
#include <vector>

#include "bench/Measure.h"
#include "engine/PathRules.h"
#include "repair/RegistryClean.h"
#include "tests/engine/TestScan.h"

using namespace hivesweep;

namespace {

constexpr int Few = 10'000;
constexpr int Many = 100'000;

// The quickest of several rounds: it was disturbed least.
template <typename TRound> double Quickest(TRound Round) {
  double Best = 1e9;
  for (int Again = 0; Again < 3; ++Again)
    Best = std::min(Best, Round());
  return Best;
}

void PrintText(const char *What, std::u16string_view Piece) {
  std::u16string Text;
  while (Text.size() < (1u << 20))
    Text += Piece;
  TPlatform Platform = MakeMemoryPlatform(MemoryRegistry(u""), {});
  TScanDisk Disk(*Platform.Files, *Platform.Drives);
  const double Seconds = Quickest([&] {
    return SecondsFor([&] {
      std::u16string Expanded(Text);
      ExpandEnvironment(Expanded, *Platform.System);
      IsPathValid(Disk, {u"C:\\Windows", u"C:\\Temp\\"}, Text);
    });
  });
  PrintRatio(What, Seconds * 1000 / 20, "goal: at most 1; 20 ms are 1");
}

// Deletes all problems of a list one by one, in no order.
double SecondsToDelete(int Count) {
  TTestMessages Messages;
  TListViewManage List(Messages);
  TGroupItems *const Groups[] = {List.AddGroup(u"2"), List.AddGroup(u"3")};
  std::vector<TItemInfo *> Items;
  for (int Index = 0; Index < Count; ++Index)
    Items.push_back(Groups[Index % 2]->Add());
  unsigned Seed = 1;
  for (std::size_t Index = Items.size(); Index > 1; --Index)
    std::swap(Items[Index - 1], Items[(Seed = Seed * 1664525U + 1013904223U) % Index]);
  return SecondsFor([&] {
    for (const TItemInfo *Item : Items)
      List.DeleteItem(Item);
  });
}

// Fixes every second problem of a list, each a value of one key.
double SecondsToFix(int Count) {
  std::u16string Text = u"[HKEY_CURRENT_USER\\A]\n";
  for (int Index = 0; Index < Count; ++Index)
    Text += u"\"" + ToDecimal(static_cast<std::uint64_t>(Index)) + u"\"=\"C:\\\\gone.dll\"\n";
  TTestScan Run(MemoryRegistry(Text));
  TGroupItems &Group = *Run.Problems->AddGroup(u"2");
  for (int Index = 0; Index < Count; ++Index) {
    TItemInfo &Item = *Group.Add();
    Item.KeyPath = u"HKEY_CURRENT_USER\\A";
    Item.ValueName = ToDecimal(static_cast<std::uint64_t>(Index));
    Item.Checked = Index % 2 == 0;
  }
  const TScratchFolder Folder;
  TRegistryClean Clean(Run.Platform, DataPathsIn(Folder.Path()));
  Clean.FixPause = 0;
  TFixReport Report;
  const double Seconds = SecondsFor([&] {
    Report = Clean.BackupAndFix(*Run.Problems, *Run.Engine, Run.Status, Run.Progress, u"");
  });
  return Report.Removed == Count / 2 ? Seconds : 1e9;
}

void PrintGrowth(const char *What, double (*SecondsFor)(int Count)) {
  const double FewSeconds = Quickest([&] { return SecondsFor(Few); });
  const double ManySeconds = Quickest([&] { return SecondsFor(Many); });
  std::printf("%s: %.1f ms, %.1f ms\n", What, FewSeconds * 1000, ManySeconds * 1000);
  PrintRatio("  time per record of 100,000 / of 10,000", ManySeconds / Many / (FewSeconds / Few),
             "goal: at most 2");
}

} // namespace

int main() {
  PrintText("a million quotes: expand and judge, in 20 ms", u"\"");
  PrintText("a million units of \"%a%\"", u"%a%");
  PrintText("a million units of \"%windir%\"", u"%windir%");
  PrintGrowth("delete 10,000 and 100,000 problems from the list", SecondsToDelete);
  PrintGrowth("fix half of 10,000 and of 100,000 problems", SecondsToFix);
  return 0;
}
