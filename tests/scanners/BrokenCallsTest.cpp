// All scanners at once, while calls of the seam fail.
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

constexpr std::u16string_view Everywhere =
    uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\a]
@="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help]
"a.hlp"="C:\\dir"
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\SharedDLLs]
"C:\\gone.dll"=dword:1
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run]
"a"="rundll32.exe C:\\gone.dll,x"
[HKEY_CLASSES_ROOT\CLSID\{1}\InprocServer32]
@="C:\\gone.dll"
[HKEY_CLASSES_ROOT\TypeLib\{1}\1.0\0\win32]
@="C:\\gone.dll"
[HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\0]
"x"="not empty"
[HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\0\win32]
@="C:\\gone.dll"
[HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\HELPDIR]
@="C:\\gone"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\a]
"UninstallString"="C:\\gone.exe /u"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Management\ARPCache\a]
[HKEY_LOCAL_MACHINE\SOFTWARE\Vendor\App]
"x"="C:\\gone.exe"
[HKEY_CLASSES_ROOT\Applications\gone.exe\shell\open\command]
@="C:\\gone.exe"
[HKEY_CLASSES_ROOT\.x]
@="x.file"
[HKEY_CLASSES_ROOT\.y]
@="no type"
[HKEY_CLASSES_ROOT\.y\OpenWithProgids]
"x.file"=""
[HKEY_CLASSES_ROOT\x.file\DefaultIcon]
@="C:\\gone.exe,1"
[HKEY_CLASSES_ROOT\x.file\shell\open\command]
@="C:\\gone.exe"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts\.x]
"Application"="gone.exe"
"Progid"="x.file"
[HKEY_CURRENT_USER\AppEvents\Schemes\Apps\App\Open\.Current]
@="C:\\gone.exe"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\MenuOrder\Start Menu\Programs]
)";

std::int32_t FoundIn(const TTestScan &Run) {
  std::int32_t Found = 0;
  for (const TAreaResult &Area : Run.Engine->AreaResults())
    Found += Area.Found;
  return Found;
}

TEST(BrokenCalls, NeverMakeAProblemOfAHealthyEntry) {
  // With every file there, the scan lists nothing, whichever call of the seam fails.
  TMachine Healthy;
  Healthy.Files = {u"C:\\gone.exe", u"C:\\dir\\a.hlp", u"C:\\gone.dll", u"C:\\gone\\",
                   u"C:\\Menu\\Programs\\"};
  Healthy.Folders = {{TSpecialFolder::StartMenu, u"C:\\Menu"},
                     {TSpecialFolder::CommonStartMenu, u"C:\\All"}};
  TFaults Faults;
  const auto Scan = [&](std::uint64_t Failing, const TMachine &Where) {
    TTestScan Run(MemoryRegistry(Everywhere, &Faults), Where, ScannerTable());
    Run.Platform.Files = MakeMemoryPlatform(nullptr, Where, &Faults).Files;
    Run.Engine = std::make_unique<TScanRegistry>(
        Run.Platform, *Run.Problems, TSettingsPaths(), ScannerTable(),
        std::vector<std::u16string>(EnglishLabels.begin(), EnglishLabels.end()));
    Faults.Reset();
    Faults.FailCall(Failing);
    Run.Scan(std::u16string(AreaCount, u'1'));
    return FoundIn(Run); // the filter would hide a part of it
  };
  constexpr std::int32_t All = 15;
  EXPECT_EQ(Scan(0, {}), All);
  const std::uint64_t CallsOfAll = Faults.Calls();
  EXPECT_EQ(Scan(0, Healthy), 0);
  const std::uint64_t Calls = std::max(CallsOfAll, Faults.Calls());
  ASSERT_GT(Calls, 140u);
  std::int32_t Least = All;
  for (std::uint64_t Call = 1; Call <= Calls; ++Call) {
    EXPECT_EQ(Scan(Call, Healthy), 0) << Call;
    Least = std::min(Least, Scan(Call, {}));
  }
  EXPECT_GE(Least, All - 3) << "one failure costs the entries of one key";
  EXPECT_LT(Least, All) << "the calls did not fail";
}

} // namespace
} // namespace hivesweep
