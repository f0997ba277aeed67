// What a listed problem costs in memory, against the texts that it consists of.
#include <malloc.h>

#include <cstdio>
#include <string>

#include "bench/Measure.h"
#include "scanners/ScannerTable.h"
#include "tests/engine/TestScan.h"

using namespace hivesweep;

namespace {

std::size_t BytesInUse() {
  const struct mallinfo2 Info = mallinfo2();
  return Info.uordblks + Info.hblkhd;
}

} // namespace

int main() {
  constexpr int Problems = 100'000;
  std::u16string Text =
      u"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDlls]\n";
  for (std::uint64_t Entry = 0; Entry < Problems; ++Entry)
    Text += u"\"C:\\\\Program Files\\\\Vendor\\\\library " + ToDecimal(Entry) + u".dll\"=dword:1\n";
  TTestScan Run(MemoryRegistry(Text), {}, ScannerTable());

  const std::size_t Before = BytesInUse();
  if (Run.Scan(TTestScan::Only(7)) != Problems)
    return 1;
  const std::size_t After = BytesInUse();

  std::size_t Units = 0;
  const TGroupItems &Group = *Run.Problems->GetGroup(0);
  for (std::int32_t Index = 0; Index < Group.Count(); ++Index) {
    const TItemInfo &Item = *Group.Get(Index);
    Units += Item.TypeName.size() + Item.KeyPath.size() + Item.ValueName.size() + Item.Data.size() +
             Item.ImageIndex.size();
  }
  for (const std::u16string &Line : Run.Engine->BackupText)
    Units += Line.size();
  const auto PerProblem = static_cast<double>(After - Before) / Problems;
  std::printf("%.0f bytes for each of %d listed problems, backup lines included\n", PerProblem,
              Problems);
  PrintRatio("memory per listed problem / the bytes of its texts",
             static_cast<double>(After - Before) / static_cast<double>(Units * sizeof(char16_t)),
             "less is better");
  return 0;
}
