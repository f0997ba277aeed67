// All scanners at once: while calls of the seam fail, and when they have been stopped.
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

// Problems for every scanner, Count of each kind.
std::u16string SomeOfEach(std::uint64_t Count) {
  constexpr std::u16string_view Kinds = uR"([HKEY_CLASSES_ROOT\CLSID\{#}\InprocServer32]
@="C:\\gone.dll"
[HKEY_CLASSES_ROOT\TypeLib\{#}\1.0\0\win32]
@="C:\\gone.dll"
[HKEY_LOCAL_MACHINE\~\App Paths\#]
@="C:\\gone.exe"
[HKEY_CLASSES_ROOT\Applications\#.exe\shell\open\command]
@="C:\\gone.exe"
[HKEY_CLASSES_ROOT\file#\DefaultIcon]
@="C:\\gone.exe,1"
[HKEY_CLASSES_ROOT\.#]
@="no type"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Fonts]
"#"="C:\\gone.ttf"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help]
"#.hlp"="C:\\dir"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Html Help]
"#.chm"="C:\\dir"
[HKEY_CURRENT_USER\~\Explorer\ComDlg32\LastVisitedMRU]
"#"="x"
[HKEY_CURRENT_USER\~\Explorer\ComDlg32\OpenSaveMRU\#]
"a"="x"
[HKEY_LOCAL_MACHINE\~\SharedDLLs]
"C:\\#.dll"=dword:1
[HKEY_CURRENT_USER\~\Explorer\Shell Folders]
"#"="C:\\gone #"
[HKEY_CURRENT_USER\Software\empty #]
[HKEY_LOCAL_MACHINE\Software\empty #]
[HKEY_LOCAL_MACHINE\~\Installer\Folders]
"C:\\gone #\\"=""
[HKEY_LOCAL_MACHINE\~\Uninstall\#]
"UninstallString"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\~\App Management\ARPCache\cached #]
[HKEY_CURRENT_USER\AppEvents\Schemes\Apps\#\Open\.Current]
@="C:\\gone.wav"
[HKEY_CURRENT_USER\~\Explorer\MenuOrder\Start Menu\#]
[HKEY_LOCAL_MACHINE\~\Run]
"#"="C:\\gone.exe"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\ShellNoRoam\MUICache]
"C:\\gone #.exe"="x"
[HKEY_CURRENT_USER\~\Explorer\FileExts\.#]
"Application"="gone.exe"
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\empty #]
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion\Drivers32]
"#"=""
[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Services\SharedAccess\Parameters\FirewallPolicy\StandardProfile\AuthorizedApplications\List]
"C:\\gone #.exe"="x"
[HKEY_LOCAL_MACHINE\SOFTWARE]
"deep #"="C:\\gone.exe"
[HKEY_CURRENT_USER\own #]
"deep"="C:\\gone.exe"
)";
  std::u16string Text;
  for (std::uint64_t Number = 1; Number <= Count; ++Number) {
    std::u16string Some(Kinds);
    ReplaceAllNoAsciiCase(Some, u"#", ToDecimal(Number));
    Text += Some;
  }
  ReplaceAllNoAsciiCase(Text, u"~", u"Software\\Microsoft\\Windows\\CurrentVersion");
  return Text;
}

// Stops a scan as soon as that shows itself.
class TStoppingBar final : public TProgressBar {
public:
  TScanRegistry *Engine = nullptr;

private:
  void Changed() override {
    if (Engine)
      Engine->Stop();
  }
};

TEST(StoppedScanners, FindNothingAndLookAtNoEntry) {
  // A scanner that looks at its first entries all the same makes more calls where there
  // are more of them.
  const auto Calls = [](const TScannerRow &Row, std::uint64_t Count, bool IsStopped) {
    TMachine Where;
    Where.Folders = {{TSpecialFolder::StartMenu, u"C:\\Menu"},
                     {TSpecialFolder::CommonStartMenu, u"C:\\All"}};
    for (std::uint64_t Number = 1; Number <= Count; ++Number)
      Where.Shortcuts[u"C:\\Menu\\folder " + ToDecimal(Number) + u"\\a.lnk"] = u"C:\\gone.exe";
    TFaults Faults;
    TTestScan Run(MemoryRegistry(SomeOfEach(Count), &Faults));
    Run.Platform.Files = MakeMemoryPlatform(nullptr, Where, &Faults).Files;
    Run.Platform.Folders = MakeMemoryPlatform(nullptr, Where).Folders;
    Run.Platform.Shell = MakeMemoryPlatform(nullptr, Where).Shell;
    Run.Engine = std::make_unique<TScanRegistry>(
        Run.Platform, *Run.Problems, TSettingsPaths(), std::span(&Row, 1),
        std::vector<std::u16string>(EnglishLabels.begin(), EnglishLabels.end()));
    TStoppingBar Bar;
    Bar.Engine = IsStopped ? Run.Engine.get() : nullptr;
    Run.Engine->StartScan(0, TTestScan::Only(Row.Area), Run.Status, u"", Bar);
    EXPECT_EQ(FoundIn(Run) == 0, IsStopped);
    EXPECT_EQ(Run.Messages->Pumps == 0, IsStopped) << "once per entry";
    return Faults.Calls();
  };
  for (std::size_t Index = 0; Index < ScannerTable().size(); ++Index) {
    SCOPED_TRACE("row " + std::to_string(Index));
    const TScannerRow &Row = ScannerTable()[Index];
    Calls(Row, 1, false);
    EXPECT_EQ(Calls(Row, 1, true), Calls(Row, 3, true));
  }
}

} // namespace
} // namespace hivesweep
