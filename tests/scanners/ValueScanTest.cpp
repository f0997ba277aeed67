#include <gtest/gtest.h>

#include <algorithm>

#include "engine/ExportLines.h"
#include "scanners/ValueRules.h"
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

class ValueScan : public TScannerTest {};

INSTANTIATE_TEST_SUITE_P(Registries, ValueScan, testing::ValuesIn(AllRegistries()), NameOfKind);

// One dead entry for each scanner, with every text that it leaves: what the record
// says, what the status line says, what the backup says. Tidying any of them changes
// what users' ignore lists and backups mean.
TEST_P(ValueScan, LeavesTheTextsOfItsScanner) {
  static const struct {
    int Area;
    std::u16string_view Registry;
    std::u16string_view Status;
    TLines Lines;
  } Cases[] = {
      {2,
       uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\Gone.exe]
@="\"%ProgramFiles%\\Gone\\gone.exe\""
"Path"="C:\\x"
)",
       u"Scanning...Application Icon",
       {R"(Nonexistent File Path | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\Gone.exe |  | C:\Program Files\Gone\gone.exe | 2)",
        R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\Gone.exe])",
        R"(@=""%ProgramFiles%\\Gone\\gone.exe"")"}},
      {5,
       uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help]
"gone.hlp"="C:\\dir"
)",
       u"Scanning...Missing Help Files",
       {R"(Missing Help Files | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help\ | gone.hlp | C:\dir\gone.hlp | 2)",
        R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help\])", R"("gone.hlp"="C:\\dir")"}},
      {5,
       uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Html Help]
@="C:\\dir\\"
)",
       u"Scanning...Missing Help Files",
       {R"(Missing Help Files | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Html Help\ |  | C:\dir\ | 2)",
        R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Html Help\])", R"(@="C:\\dir\\")"}},
      {9,
       uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders]
"C:\\gone\\"="a\\b"
)",
       u"Scanning...Obsolete Software",
       {R"(Invalid Installer | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders\ | C:\gone\ |  | 2)",
        R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders\])",
        R"("C:\\gone\\"="a\\b")"}},
      {7,
       uR"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\SharedDLLs]
"C:\\gone.dll"=dword:0000001a
)",
       u"Scanning...Missing Shared DLL",
       {R"(Missing Shared DLL | HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\SharedDlls | C:\gone.dll | 26 | 2)",
        R"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\SharedDlls])",
        R"("C:\\gone.dll"=dword:26)"}},
      {16,
       uR"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion\Drivers32]
"msacm\\x"=""
)",
       u"Scanning...Invalid File Extensions",
       {R"(Invalid File Extensions | HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion\Drivers32\ | msacm\x |  | 1)",
        R"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion\Drivers32\])",
        R"("msacm\x"="")"}},
      {4,
       uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Fonts]
"Gone \\ One"="C:\\gone.ttf"
)",
       u"Scanning...Invalid Font",
       {R"(Invalid Font | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Fonts | Gone \ One | C:\gone.ttf | 2)",
        R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Fonts])",
        R"("Gone \ One"="C:\\gone.ttf")"}},
      {12,
       uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run]
"Up\\1"="\"C:\\Gone.EXE\" /q"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run]
"Up2"="\"%SystemRoot%\\Gone.exe\""
"Up3"="\"\""
)",
       u"Scanning...Startup Issue",
       {R"(Startup Issue | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run | Up\1 | C:\Gone.EXE /q | 2)",
        R"(Startup Issue | HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run | Up2 | %SystemRoot%\Gone.exe | 2)",
        R"(Startup Issue | HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run | Up3 |  | 1)",
        R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run])",
        R"("Up\1"="C:\\Gone.EXE /q")",
        R"([HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run])",
        R"("Up2"="%SystemRoot%\\Gone.exe")",
        R"([HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run])", R"("Up3"="")"}},
  };
  for (const auto &C : Cases) {
    Renew();
    Load(C.Registry);
    EXPECT_EQ(Scan(C.Area), C.Lines);
    ASSERT_FALSE(Run_->Status.Texts.empty());
    EXPECT_EQ(ToUtf8(Run_->Status.Texts.back()), ToUtf8(C.Status));
  }
}

TEST_P(ValueScan, TheMuiCacheAndTheFirewallAreFoundAndHeldBack) {
  Load(uR"([HKEY_CURRENT_USER\Software\Microsoft\Windows\ShellNoRoam\MUICache]
"C:\\gone.exe"="C:\\Title"
"@%SystemRoot%\\gone.dll,-1"="y"
"@C:\\here.dll,-1"="y"
"@C:\\gone.dll"="no comma"
"N:\\net\\gone.exe"="network"
"C:\\gone.exe:x"="no path"
"C:\\EXP"=hex(2):00,00
"LangID"=hex:09,04
[HKEY_LOCAL_MACHINE\SYSTEM\CurrentControlSet\Services\SharedAccess\Parameters\FirewallPolicy\StandardProfile\AuthorizedApplications\List]
"%SystemRoot%\\gone.exe"="g"
"C:\\gone.exe"=dword:1
"C:\\here.exe"="h"
"C:\\gone"="folder"
"C:\\v1.2"="folder that is there"
"C:\\gone.html"="cannot be told"
"N:\\gone.exe"="network"
"C:\\locked\\a.exe"="locked"
)");
  // Built-in lists protect both branches, so nothing is listed; the counts and the
  // rules tell what was found.
  EXPECT_EQ(Scan(13), TLines());
  EXPECT_EQ(Run_->Engine->AreaResults()[12].Found, 2);
  EXPECT_EQ(Run_->Status.Texts.back(), u"Scanning...MUI History");
  for (const TProtectedItem &Item : Run_->Engine->ProtectedItems()) {
    EXPECT_EQ(Item.Protection.RuleText(),
              u"KeyPrefixes: hkey_current_user\\software\\microsoft\\windows\\shell");
    EXPECT_EQ(Item.KeyPath,
              u"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\ShellNoRoam\\MUICache\\");
  }
  EXPECT_EQ(Scan(16), TLines());
  EXPECT_EQ(Run_->Engine->AreaResults()[15].Found, 2);
  EXPECT_EQ(Run_->Engine->ProtectedItems()[0].Protection.RuleText(),
            u"KeyPrefixes: hkey_local_machine\\system");
}

TEST_P(ValueScan, AppPathsAreTestedWhole) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\a]
@="C:\\here.exe /s"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\b]
@="\"C:\\here.exe\""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\c]
@=hex(7):43,00,3a,00,5c,00,78,00,00,00,00,00
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\d]
@=dword:1
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\e]
"Path"="C:\\gone"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\f]
@="%ProgramFiles%\\App\\here.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\g]
@="C:\\locked\\x.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\h]
@="here.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\i]
@="C:/gone//x?.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\j]
@="C:\\\\here.exe. "
)");
  const TLines Lines = Scan(2);
  ASSERT_EQ(Lines.size(), 6u);
  EXPECT_NE(Lines[0].find(R"(\a |  | C:\here.exe /s | 2)"), std::string::npos);
  EXPECT_NE(Lines[1].find(R"(\i |  | C:/gone//x?.exe | 2)"), std::string::npos);
}

TEST_P(ValueScan, HelpOffAFixedDriveIsReportedUnseen) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Help]
"here.hlp"="N:\\net"
"gone.hlp"="X:\\none\\"
"empty.hlp"=""
"locked.hlp"="C:\\locked"
"other.hlp"=hex(7):43,00,00,00,00,00
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\Html Help]
"here.hlp"=hex(2):43,00,3a,00,5c,00,64,00,69,00,72,00
)");
  EXPECT_EQ(Names(5), u"empty.hlp gone.hlp here.hlp ");
  for (std::int32_t Index = 0; Index < 3; ++Index) {
    const TItemInfo &Item = *Run_->Problems->GetGroup(0)->Get(Index);
    if (Item.ValueName == u"empty.hlp") {
      EXPECT_EQ(Item.Data, u"\\empty.hlp");
    }
  }
}

TEST_P(ValueScan, CountersAndFoldersAreJudgedByTheirNames) {
  Load(uR"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\SharedDLLs]
"C:\\here.dll"=dword:0
"C:\\here.exe"=dword:1
"C:\\v1.2"=dword:1
"C:\\locked\\a.dll"=dword:1
"C:\\text.dll"="1"
"C:\\short.dll"=hex(4):01,00
"N:\\net\\gone.dll"=dword:0
"gone.dll"=dword:0
"C:\\big.dll"=dword:ffffffff
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders]
"C:\\v1.2\\"=""
"C:\\here.exe"="1"
"C:\\locked\\x\\"=""
"N:\\gone\\"=""
"gone"=""
"C:\\gone"=dword:0
)");
  EXPECT_EQ(Names(7), u"C:\\big.dll C:\\here.dll C:\\v1.2 ");
  const auto &Backup = Run_->Engine->BackupText;
  EXPECT_NE(std::find(Backup.begin(), Backup.end(), u"\"C:\\\\big.dll\"=dword:4294967295"),
            Backup.end());
  EXPECT_NE(std::find(Backup.begin(), Backup.end(), u"\"C:\\\\here.dll\"=dword:0"), Backup.end());
  EXPECT_EQ(Names(9), u"C:\\here.exe ") << "a file is no folder";
}

TEST_P(ValueScan, FontsAndDrivers) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows NT\CurrentVersion\Fonts]
"bare"="gone.ttf"
"bare and there"="a.ttf"
"relative"="..\\gone.ttf"
"there"="C:\\WINNT\\Fonts\\a.ttf"
"empty"=""
"gone"="C:\\gone.ttf"
"number"=dword:1
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion\Drivers32]
"named"="gone.drv"
"zero first"=hex(1):00,00,61,00
"no data"=hex(2):
"number"=dword:0
)");
  EXPECT_EQ(Names(4), u"gone ");
  EXPECT_EQ(Names(16), u"no data zero first ");
  EXPECT_EQ(FontPath(u"C:\\W", u"a.ttf"), u"C:\\W\\Fonts\\a.ttf");
  EXPECT_EQ(FontPath(u"C:\\W", u"D:\\a.ttf"), u"D:\\a.ttf");
}

TEST_P(ValueScan, StartupCommands) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run]
"01 dll gone"="RunDLL32.exe  \"C:\\Gone.dll\" ,Start"
"02 dll there"="C:\\x\\rundll32.exe C:\\here.dll,Start"
"03 no comma"="rundll32.exe C:\\gone.dll Start"
"04 bare dll"="rundll32 C:\\gone.dll,x"
"05 old"="rundll.exe C:\\gone.dll,x"
"06 bare name"="rundll32.exe gone.dll,x"
"07 network dll"="rundll32.exe N:\\gone.dll,x"
"08 variable"="%SystemRoot%\\gone.exe"
"09 program gone, 32 in front"="C:\\gone\\rundll32.exe"
"10 blank"=" "
"11 arguments"="C:\\here.exe -x C"
"12 drive in arguments"="C:\\gone.exe D:\\x"
"13 empty"=""
"14 cut"=hex(2):43,00,3a,00,5c,00,67,00,2e,00,65,00,78,00,65,00,00,00,7a,00,5a
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Run]
"08 variable"="%SystemRoot%\\gone.exe"
"15 dll"="rundll32.exe %systemroot%\\gone.dll,x"
)");
  // 04 names no "rundll32.exe"; as a command it has no drive in front.
  EXPECT_EQ(Names(12), u"01 dll gone 05 old 08 variable 13 empty 14 cut 15 dll ");
  const auto Data = [&](std::u16string_view Name) -> std::u16string {
    const TGroupItems &Group = *Run_->Problems->GetGroup(0);
    for (std::int32_t Index = 0; Index < Group.Count(); ++Index)
      if (Group.Get(Index)->ValueName == Name)
        return Group.Get(Index)->Data;
    return u"not listed";
  };
  EXPECT_EQ(Data(u"01 dll gone"), u"RunDLL32.exe  C:\\Gone.dll ,Start") << "not lower-cased";
  EXPECT_EQ(Data(u"15 dll"), u"rundll32.exe %systemroot%\\gone.dll,x") << "not expanded";
  EXPECT_EQ(Data(u"14 cut"), u"C:\\g.exe") << "up to the first zero";
}

TEST_P(ValueScan, CountsBeforeTheFilterAndSurvivesWhatItCannotRead) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Run]
"Norton"="C:\\gone.exe"
"x"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\denied]
@="C:\\gone.exe"
)");
  TTestScan Run(std::make_unique<TRootedRegistry>(*Registry_), Machine(), ScannerTable());
  EXPECT_EQ(Run.Scan(TTestScan::Only(12)), 1);
  EXPECT_EQ(Run.Engine->AreaResults()[11].Found, 2);
  EXPECT_EQ(Run.Engine->BackupText.size(), 2u);

  const std::u16string Denied = u"Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\denied";
  if (!Deny(u"HKEY_LOCAL_MACHINE\\" + Denied))
    GTEST_SKIP() << "this registry denies this user nothing";
  EXPECT_EQ(Run.Scan(TTestScan::Only(2)), 0);
  ASSERT_EQ(Run.Engine->UnreadableKeys().size(), 1u);
  EXPECT_EQ(Run.Engine->UnreadableKeys()[0].KeyPath, u"HKEY_LOCAL_MACHINE\\" + Denied);
  EXPECT_EQ(Run.Engine->UnreadableKeys()[0].Status, TRegStatus::Denied);
}

TEST_P(ValueScan, LeavesNothingBehind) {
  // By weight, only what is many times too much can be told; a sanitizer, in whose
  // place that is not measured, finds a single leak.
  const bool ByWeight = PrivateBytes().has_value();
  const std::size_t Many = ByWeight ? 100'000 : 2'000;
  const int Scans = ByWeight ? 100 : 20;
  std::u16string Text =
      u"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs]\n";
  TMachine Where = Machine();
  // Ascending names: a registry that sorts them takes minutes otherwise.
  for (std::size_t Number = 0; Number < Many; ++Number) {
    const std::u16string Name = u"dir\\" + ToDecimal(1'000'000 + Number);
    if (Number % (Many / 100) != 0)
      Where.Files.push_back(u"C:\\" + Name);
    Text += u"\"C:\\\\" + Escaped(Name) + u"\"=dword:1\n";
  }
  Load(Text);
  Load(u"[HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\App Paths\\a]\n"
       u"@=\"C:\\\\gone\"\n");
  TTestScan Run(std::make_unique<TRootedRegistry>(*Registry_), Where, ScannerTable());
  const auto ScanAll = [&](std::int32_t Problems) {
    EXPECT_EQ(Run.Scan(u"1111111111111111"), Problems);
    Run.Progress.States.clear(); // what the test itself keeps
    Run.Messages->Posts.clear();
    Run.Status.Texts.clear();
  };
  ScanAll(101);
  const std::size_t Handles = OpenHandles();
  const std::optional<std::size_t> Bytes = PrivateBytes();
  const auto ExpectNoMore = [&] {
    EXPECT_LE(OpenHandles(), Handles + 10);
    EXPECT_LE(PrivateBytes().value_or(0), Bytes.value_or(0) + (1u << 20));
  };
  for (int Round = 0; Round < 3; ++Round)
    ScanAll(101);
  ExpectNoMore();

  Load(u"[-HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\SharedDLLs]");
  for (int Round = 0; Round < Scans; ++Round)
    ScanAll(1);
  ExpectNoMore();
}

} // namespace
} // namespace hivesweep
