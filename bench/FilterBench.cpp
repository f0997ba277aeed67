// How much faster the exclusion filter is than the walk along its lists, on the same
// texts in the same run; and that the two agree on every one of them.
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "bench/Measure.h"
#include "engine/ExclusionFilter.h"
#include "platform/DiskFile.h"
#include "platform/Platform.h"
#include "repair/AppFrame.h"
#include "tests/engine/LiteralWalk.h"
#include "tests/platform/TestHosts.h"

using namespace hivesweep;

namespace {

constexpr std::size_t TextCount = 100'000;

bool Same(const std::optional<TProtection> &Left, const std::optional<TProtection> &Right) {
  return Left.has_value() == Right.has_value() &&
         (!Left || (Left->Source == Right->Source && Left->Entry == Right->Entry));
}

} // namespace

int main() {
  const TScratchFolder Folder;
  const TDataPaths Paths = DataPathsIn(Folder.Path());
  std::string Ignored = "[Registry]\r\n";
  for (int Key = 0; Key < 100; ++Key)
    Ignored += "HKEY_LOCAL_MACHINE\\Software\\Vendor\\" + std::to_string(Key) + "=N/A\r\n";
  if (WriteWholeFile(Paths.IgnoreIniPath, Ignored))
    return 3;
  SetAge(Paths.IgnoreIniPath, 3600);

  const TPlatform Platform = MakeLocalServices();
  TIgnoreFile NoFile(*Platform.Profiles, u"");
  TIgnoreFile File(*Platform.Profiles, Paths.IgnoreIniPath);
  const TExclusionFilter Lists({}, NoFile, true);
  const TExclusionFilter Whole({}, File, true);

  TMixedTexts Texts(Lists, 42);
  std::vector<std::array<std::u16string, 3>> Entries(TextCount);
  for (auto &Entry : Entries)
    Entry = Texts.Next();

  std::vector<std::optional<TProtection>> Fast(TextCount), Slow(TextCount);
  const double Literal = SecondsFor([&] {
    for (std::size_t Index = 0; Index < TextCount; ++Index)
      Slow[Index] = WalkLiterally(Lists, Entries[Index][0], Entries[Index][1], Entries[Index][2]);
  });
  const auto Check = [&](const TExclusionFilter &Filter) {
    return SecondsFor([&] {
      for (std::size_t Index = 0; Index < TextCount; ++Index)
        Fast[Index] = Filter.Check(Entries[Index][0], Entries[Index][1], Entries[Index][2]);
    });
  };
  const double OnePass = Check(Lists);
  std::size_t Differences = 0;
  std::size_t HeldBack = 0;
  for (std::size_t Index = 0; Index < TextCount; ++Index) {
    Differences += Same(Fast[Index], Slow[Index]) ? 0 : 1;
    HeldBack += Slow[Index] ? 1 : 0;
  }
  std::printf("%zu mixed texts, %zu of them held back, %zu differences\n", TextCount, HeldBack,
              Differences);
  PrintRatio("IsAllowed: walk along the lists / one pass", Literal / OnePass, "goal: at least 20");

  // The ignore file: read and parsed at every call, or only when it has changed.
  constexpr std::size_t FileCalls = 2'000;
  TIniSection Section;
  const double Reading = SecondsFor([&] {
    for (std::size_t Call = 0; Call < FileCalls; ++Call)
      Platform.Profiles->ReadSection(Paths.IgnoreIniPath, u"Registry", Section);
  });
  const double Asking = SecondsFor([&] {
    for (std::size_t Call = 0; Call < FileCalls; ++Call)
      File.Contains(u"HKEY_LOCAL_MACHINE\\Software\\Vendor\\none");
  });
  PrintRatio("ignore file: reading it each time / looking whether it changed", Reading / Asking,
             "more is better");
  const double WithFile = Check(Whole);
  PrintRatio("IsAllowed with an ignore file / without", WithFile / OnePass, "less is better");
  const double Building = SecondsFor([&] {
    for (int Round = 0; Round < 20; ++Round)
      const TExclusionFilter Filter({}, NoFile, true);
  });
  PrintRatio("building the filter / one walk along the lists",
             Building / 20 / (Literal / TextCount), "once per scan");
  return Differences == 0 ? 0 : 1;
}
