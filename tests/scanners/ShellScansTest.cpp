#include "platform/DiskFile.h"
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

TMachine ShellMachine() {
  TMachine Out;
  Out.Drives = {{u'C', TDriveType::Fixed}, {u'H', TDriveType::Fixed}, {u'N', TDriveType::Network}};
  Out.AppData = u"C:\\Me\\AppData";
  Out.Folders = {{TSpecialFolder::Desktop, u"H:\\Desktop"},
                 {TSpecialFolder::StartMenu, u"C:\\Me\\Menu"},
                 {TSpecialFolder::CommonStartMenu, u"C:\\All\\Menu"},
                 {TSpecialFolder::Recent, u"H:\\Desktop"}};
  Out.Files = {u"C:\\here.exe", u"C:\\here.wav", u"C:\\Windows\\Media\\ding.wav",
               u"C:\\Windows\\System32\\old.wav"};
  return Out;
}

class ShellScans : public TScannerTest {
protected:
  ShellScans() : TScannerTest(ShellMachine()) {}
};

INSTANTIATE_TEST_SUITE_P(Registries, ShellScans, testing::ValuesIn(AllRegistries()), NameOfKind);

TEST_P(ShellScans, ShortcutsAreFollowedToFixedDrivesOnly) {
  const std::u16string Menu = u"C:\\Me\\Menu\\Programs\\";
  Where_.Shortcuts = {
      {u"H:\\Desktop\\gone.LNK", u"C:\\gone.exe"},
      {Menu + u"a folder.lnk", u"C:\\Windows"},
      {Menu + u"deep\\deeper\\gone too.lnk", u"C:\\gone folder"},
      {Menu + u"here.lnk", u"C:\\here.exe"},
      {Menu + u"of an installer.lnk", u""},
      {Menu + u"on a server.lnk", u"\\\\server\\share\\gone.exe"},
      {Menu + u"on the network.lnk", u"N:\\gone.exe"},
      {Menu + u"unplugged.lnk", u"X:\\gone.exe"},
      {Menu + u"control panel.lnk", u"::{20D04FE0-3AEA-1069-A2D8-08002B30309D}"},
      {Menu + u"unknown variable.lnk", u"%Nothing%\\gone.exe"},
      {Menu + u"variable.lnk", u"%Tools%\\gone.exe"},
      {Menu + u"behind a junction\\seen twice.lnk", u"C:\\gone.exe"},
      {u"C:\\Me\\AppData\\Microsoft\\Internet Explorer\\Quick Launch\\q.lnk", u"C:\\gone.exe"},
      {u"C:\\elsewhere\\gone.lnk", u"C:\\gone.exe"},
  };
  Where_.Environment = {{u"Tools", u"C:\\Tools"}};
  Where_.Files.insert(Where_.Files.end(), {Menu + u"no shortcut.lnk", Menu + u"gone.txt"});
  Where_.Links = {Menu + u"behind a junction"};
  EXPECT_EQ(
      Scan(8),
      (TLines{
          R"(Invalid Shortcut File | H:\Desktop\gone.LNK | N/A | H:\Desktop\gone.LNK | 2)",
          R"(Invalid Shortcut File | C:\Me\Menu\Programs\variable.lnk | N/A | C:\Me\Menu\Programs\variable.lnk | 2)",
          R"(Invalid Shortcut File | C:\Me\Menu\Programs\deep\deeper\gone too.lnk | N/A | C:\Me\Menu\Programs\deep\deeper\gone too.lnk | 2)",
          R"(Invalid Shortcut File | C:\Me\AppData\Microsoft\Internet Explorer\Quick Launch\q.lnk | N/A | C:\Me\AppData\Microsoft\Internet Explorer\Quick Launch\q.lnk | 2)"}));
  EXPECT_EQ(Run_->Status.Texts.front(), u"Scanning...Invalid Shortcuts");

  Run_->Messages->OnPump = [&] { Run_->Engine->Stop(); };
  EXPECT_EQ(Run_->Scan(TTestScan::Only(8)), 0);
}

TEST_P(ShellScans, ATargetInTheOtherHalfIsAlive) {
  Where_.Wow64 = true;
  Where_.Files = {u"C:\\Windows\\System32\\only64.exe", u"C:\\Program Files\\App\\a.exe"};
  Where_.Shortcuts = {{u"H:\\Desktop\\1.lnk", u"C:\\Windows\\system32\\only64.exe"},
                      {u"H:\\Desktop\\2.lnk", u"C:\\Program Files (x86)\\App\\a.exe"},
                      {u"H:\\Desktop\\3.lnk", u"C:\\Program Files (x86)\\App\\b.exe"}};
  EXPECT_EQ(Keys(8), u"H:\\Desktop\\3.lnk ");
}

TEST_P(ShellScans, ShellFoldersAreLookedForAsFolders) {
  Load(uR"([HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders]
"Cache"="C:\\gone"
"Desktop"="C:\\Me\\Menu\\"
"File"="C:\\here.exe"
"Network"="N:\\gone"
"Variable"="C:\\%gone%"
"Number"=dword:1
"Empty"=""
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders]
"Common"="C:\\gone\\common"
)");
  const TLines Lines = Scan(8);
  ASSERT_EQ(Lines.size(), 9u);
  EXPECT_EQ(
      Lines[0],
      R"(Invalid Shortcuts | HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders | Cache | C:\gone | 2)");
  EXPECT_EQ(
      Lines[2],
      R"(Invalid Shortcuts | HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\Explorer\Shell Folders | Common | C:\gone\common | 2)");
  EXPECT_EQ(Lines[4], R"("Cache"="C:\\gone")");
  EXPECT_EQ(Names(8), u"Cache Common File ");
}

TEST_P(ShellScans, SoundsAreLookedForWhereTheSystemDoes) {
  const auto Event = [](std::u16string_view Name, std::u16string_view Data) {
    return u"[HKEY_CURRENT_USER\\AppEvents\\Schemes\\Apps\\.Default\\" + std::u16string(Name) +
           u"\\.Current]\n@=" + std::u16string(Data) + u"\n";
  };
  Load(Event(u"1 bare and there", u"\"ding.wav\"") + Event(u"2 bare and gone", u"\"gone.wav\"") +
       Event(u"3 in the system folder", u"\"old\"") + Event(u"4 there", u"\"C:\\\\here.wav\"") +
       Event(u"5 gone", u"\"%SystemRoot%\\\\Media\\\\gone.wav\"") + Event(u"6 silent", u"\"\"") +
       Event(u"7 network", u"\"N:\\\\gone.wav\"") + Event(u"8 unknown", u"\"%x%\\\\gone.wav\"") +
       Event(u"9 relative", u"\"x\\\\gone.wav\"") +
       u"[HKEY_CURRENT_USER\\AppEvents\\Schemes\\Apps\\App\\Open\\.Default]\n@=\"C:\\\\gone."
       u"wav\"\n");
  EXPECT_EQ(
      Scan(10),
      (TLines{
          R"(Invalid Sound | HKEY_CURRENT_USER\AppEvents\Schemes\Apps\.Default\2 bare and gone\.Current |  | C:\Windows\Media\gone.wav | 2)",
          R"(Invalid Sound | HKEY_CURRENT_USER\AppEvents\Schemes\Apps\.Default\5 gone\.Current |  | C:\Windows\Media\gone.wav | 2)",
          R"([HKEY_CURRENT_USER\AppEvents\Schemes\Apps\.Default\2 bare and gone\.Current])",
          R"(@="gone.wav")",
          R"([HKEY_CURRENT_USER\AppEvents\Schemes\Apps\.Default\5 gone\.Current])",
          R"(@="%SystemRoot%\\Media\\gone.wav")"}));
}

TEST_P(ShellScans, AMenusOrderIsDeadWithTheFolderInBothMenus) {
  Where_.Files = {u"C:\\Me\\Menu\\Programs\\Mine\\", u"C:\\All\\Menu\\Programs\\Ours\\"};
  const std::u16string Order =
      u"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\MenuOrder\\";
  std::u16string Text;
  for (const std::u16string_view Key :
       {u"Start Menu\\&Programs\\Menu", u"Start Menu\\Programs\\Mine\\Gone",
        u"Start Menu2\\Programs\\Gone\\Below", u"Start Menu2\\Programs\\OURS",
        u"Start Menu2\\Gone & away", u"Favorites\\Gone"})
    Text += u"[" + Order + std::u16string(Key) + u"]\n\"Order\"=hex:01\n";
  Load(Text);
  EXPECT_EQ(Keys(11), Order + u"Start Menu2\\Gone & away " + Order +
                          u"Start Menu2\\Programs\\Gone " + Order +
                          u"Start Menu\\Programs\\Mine\\Gone ");
  // The branch is protected; the folder that was looked for is the user's.
  EXPECT_EQ(Run_->Problems->TotalCount(), 0);
  EXPECT_EQ(Run_->Engine->ProtectedItems()[0].Data, u"C:\\Me\\Menu\\Programs\\Mine\\Gone");
  EXPECT_EQ(Run_->Engine->ProtectedItems()[0].ValueName, u"N/A");

  Where_.Folders[TSpecialFolder::CommonStartMenu] = u"N:\\Menu";
  EXPECT_EQ(Keys(11), u"") << "a menu on the network could hold them all";
}

} // namespace
} // namespace hivesweep
