#include "scanners/SoftwareScanners.h"
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

constexpr std::u16string_view UninstallKey =
    u"HKEY_LOCAL_MACHINE\\Software\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\";

class SoftwareScan : public TScannerTest {
protected:
  // The built-in lists hold all cached entries back, so none is ever listed.
  std::u16string CachedEntries() {
    std::u16string Out;
    for (const TProtectedItem &Item : Run_->Engine->ProtectedItems()) {
      EXPECT_EQ(Item.Protection.RuleText(), u"KeyPrefixes: hkey_local_machine\\software\\microsoft"
                                            u"\\windows\\currentversion\\app management\\arpcache");
      EXPECT_EQ(Item.ValueName, u"N/A");
      EXPECT_EQ(Item.Data, u"");
      Out += Item.KeyPath.substr(Item.KeyPath.rfind(u'\\') + 1) + u" ";
    }
    return Out;
  }
};

INSTANTIATE_TEST_SUITE_P(Registries, SoftwareScan, testing::ValuesIn(AllRegistries()), NameOfKind);

// The order is that of the table; only one of the empty keys is of the other kind.
TEST_P(SoftwareScan, LeavesItsTextsInItsOrder) {
  Load(uR"([HKEY_CURRENT_USER\Software\Gone A]
[HKEY_CURRENT_USER\Software\Gone B]
@=" "
[HKEY_LOCAL_MACHINE\Software\Gone C]
[HKEY_LOCAL_MACHINE\Software\Gone D]
@=""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders]
"C:\\gone\\"=""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone E]
@=""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone F]
"UninstallString"="\"%SystemRoot%\\Gone\\unins000.exe\" /SILENT"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone G]
@="C:\\Gone\\folder"
"DisplayName"="Gone"
)");
  EXPECT_EQ(
      Scan(9),
      (TLines{
          R"(Obsolete Software | HKEY_CURRENT_USER\Software\Gone A | N/A |  | 2)",
          R"(Obsolete Software | HKEY_CURRENT_USER\Software\Gone B | N/A |  | 2)",
          R"(Obsolete Software | HKEY_LOCAL_MACHINE\Software\Gone C | N/A |  | 2)",
          R"(Obsolete Software | HKEY_LOCAL_MACHINE\Software\Gone D | N/A |  | 1)",
          R"(Invalid Installer | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders\ | C:\gone\ |  | 2)",
          R"(Invalid Uninstaller | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone E | N/A |  | 2)",
          R"(Invalid Uninstaller | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone F | UninstallString | "%SystemRoot%\Gone\unins000.exe" /SILENT | 2)",
          R"(Invalid Uninstaller | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone G |  | C:\Gone\folder | 2)",
          R"([HKEY_CURRENT_USER\Software\Gone A])", R"([HKEY_CURRENT_USER\Software\Gone B])",
          R"([HKEY_LOCAL_MACHINE\Software\Gone C])", R"([HKEY_LOCAL_MACHINE\Software\Gone D])",
          R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Installer\Folders\])",
          R"("C:\\gone\\"="")",
          R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone E])",
          R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone F])",
          R"("UninstallString"="\"%SystemRoot%\\Gone\\unins000.exe /SILENT\"")",
          R"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Gone G])",
          R"(@="C:\\Gone\\folder")"}));
  for (const std::u16string &Text : Run_->Status.Texts)
    EXPECT_EQ(Text, u"Scanning...Obsolete Software");
}

TEST_P(SoftwareScan, OnlyAKeyThatHoldsNothingIsObsolete) {
  Load(uR"([HKEY_CURRENT_USER\Software\a subkey\x]
[HKEY_CURRENT_USER\Software\a value]
"x"=""
[HKEY_CURRENT_USER\Software\blank name]
" "=""
[HKEY_CURRENT_USER\Software\Classes]
[HKEY_CURRENT_USER\Software\number]
@=dword:0
[HKEY_CURRENT_USER\Software\text]
@="x"
[HKEY_CURRENT_USER\Software\two]
@=""
"x"=""
[HKEY_LOCAL_MACHINE\Software\classes]
)");
  EXPECT_EQ(Scan(9), TLines());
  // Only the one spelling is passed over; the other is looked at, and held back.
  ASSERT_EQ(Run_->Engine->ProtectedItems().size(), 1u);
  EXPECT_EQ(Run_->Engine->ProtectedItems()[0].KeyPath, u"HKEY_LOCAL_MACHINE\\Software\\classes");
}

TEST_P(SoftwareScan, JudgesTheValuesOfUninstallEntries) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Many]
"01 there"="C:\\here.exe /u"
"02 gone"="C:\\gone.exe /u"
"03 bare name"="rundll32.exe setup.dll,x"
"04 network"="N:\\gone.exe"
"05 two drives"="C:\\gone.exe D:\\x"
"06 locked"="C:\\locked\\a.exe"
"07 number"=dword:1
"08 folder gone"="C:\\gone"
"09 folder there"="C:\\v1.2"
"10 dot in a folder"="C:\\gone 1.0\\yy"
"11 quotes around arguments"="\"C:\\gone\" \"x\""
"12 one pair"="\"C:\\gone\""
"13 icon"="C:\\gone.ico,0"
"14 shorter than a drive"="C:"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\nothing]
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\one, blank name]
" "="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\one, blank name, subkey]
" "="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\one, blank name, subkey\x]
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\one, number]
@=dword:0
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\one, empty, subkey]
@=""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\one, empty, subkey\x]
)");
  EXPECT_EQ(Names(9), u"  02 gone 08 folder gone 12 one pair 13 icon ");
  EXPECT_EQ(Run_->Problems->GetGroup(0)->Get(Run_->Problems->TotalCount() - 1)->KeyPath,
            std::u16string(UninstallKey) + u"one, blank name, subkey");
}

TEST_P(SoftwareScan, KnowsTheProgramsOfThisScanAlone) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Äther]
"x"=""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\Later]
"x"=""
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\App Management\ARPCache\äTHER]
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\App Management\ARPCache\LATER\Below]
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\App Management\ARPCache\Long gone]
)");
  EXPECT_EQ(Scan(9), TLines());
  EXPECT_EQ(CachedEntries(), u"Long gone ");
  EXPECT_EQ(Run_->Engine->UninstallNames, (std::vector<std::u16string>{u"Later", u"Äther"}));

  Load(u"[-" + std::u16string(UninstallKey) + u"Later]");
  Run_->Scan(TTestScan::Only(9)); // by the same engine
  EXPECT_EQ(CachedEntries(), u"LATER Long gone ");

  Load(u"[-" + std::u16string(UninstallKey.substr(0, UninstallKey.size() - 1)) + u"]");
  Run_->Scan(TTestScan::Only(9));
  EXPECT_EQ(CachedEntries(), u"LATER Long gone äTHER ") << "without programs, all are orphans";
}

TEST_P(SoftwareScan, ProgramsThatCannotBeReadAreNotGone) {
  Load(uR"([HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Uninstall\There]
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\App Management\ARPCache\There]
)");
  if (!Deny(std::u16string(UninstallKey.substr(0, UninstallKey.size() - 1))))
    GTEST_SKIP() << "this registry denies this user nothing";
  EXPECT_EQ(Scan(9), TLines());
  EXPECT_EQ(CachedEntries(), u"");
  EXPECT_EQ(Run_->Engine->UnreadableKeys().size(), 1u);
}

} // namespace
} // namespace hivesweep
