#include "scanners/CommandRules.h"
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

TMachine TypeMachine() {
  TMachine Out;
  Out.WinDir = u"C:\\WINNT";
  Out.Drives = {
      {u'C', TDriveType::Fixed}, {u'N', TDriveType::Network}, {u'R', TDriveType::Removable}};
  Out.Files = {u"C:\\here.exe", u"C:\\here.ico", u"C:\\two words.exe", u"C:\\folder.app\\"};
  return Out;
}

class FileTypeScans : public TScannerTest {
protected:
  FileTypeScans() : TScannerTest(TypeMachine()) {}
};

INSTANTIATE_TEST_SUITE_P(Registries, FileTypeScans, testing::ValuesIn(AllRegistries()), NameOfKind);

// One dead entry of each kind, with every text that it leaves.
TEST_P(FileTypeScans, LeaveTheTextsOfTheirScanner) {
  static const struct {
    int Area;
    std::u16string_view Registry;
    std::u16string_view Status;
    TLines Lines;
  } Cases[] = {
      {2,
       uR"([HKEY_CLASSES_ROOT\Applications\gone.exe\shell\open\command]
@="\"C:\\a b\\gone.exe\" \"%1\""
[HKEY_CLASSES_ROOT\Applications\gone.exe\shell\print\command]
@="C:\\gone.exe /p"
)",
       u"Scanning...Application Icon",
       {R"(Nonexistent File Path | HKEY_CLASSES_ROOT\Applications\gone.exe | N/A | "C:\a b\gone.exe" "%1" | 1)",
        R"([HKEY_CLASSES_ROOT\Applications\gone.exe])",
        R"([HKEY_CLASSES_ROOT\Applications\gone.exe\shell\open\command])",
        R"(@=""C:\\a b\\gone.exe" "%1"")"}},
      {3,
       uR"([HKEY_CLASSES_ROOT\gone.type\DefaultIcon]
@="%SystemRoot%\\gone.dll,-7"
[HKEY_CLASSES_ROOT\gone.type\shell\open\command]
@="C:\\gone.exe %1"
[HKEY_CLASSES_ROOT\none.type]
[HKEY_CLASSES_ROOT\void.type]
@=" "
)",
       u"Scanning...Unused File Extensions",
       {R"(Application Icon | HKEY_CLASSES_ROOT\gone.type\DefaultIcon | N/A | C:\WINNT\gone.dll,-7 | 2)",
        R"(Nonexistent File Path | HKEY_CLASSES_ROOT\gone.type\shell\open | N/A | C:\gone.exe %1 | 2)",
        R"(Empty Registry Key | HKEY_CLASSES_ROOT\none.type | N/A |  | 1)",
        R"(Empty Registry Key | HKEY_CLASSES_ROOT\void.type | N/A |  | 1)",
        R"([HKEY_CLASSES_ROOT\gone.type\DefaultIcon])", R"(@="%SystemRoot%\\gone.dll,-7")",
        R"([HKEY_CLASSES_ROOT\gone.type\shell\open])",
        R"([HKEY_CLASSES_ROOT\gone.type\shell\open\command])", R"(@="C:\\gone.exe %1")",
        R"([HKEY_CLASSES_ROOT\none.type])", R"([HKEY_CLASSES_ROOT\void.type])", R"(@="")"}},
      {3,
       uR"([HKEY_CLASSES_ROOT\.gone]
@="no\\such"
[HKEY_CLASSES_ROOT\.none]
)",
       u"Scanning...Unused File Extensions",
       {R"(Invalid File Extensions | HKEY_CLASSES_ROOT\.gone |  | no\such | 2)",
        R"(Unused File Extensions | HKEY_CLASSES_ROOT\.none | N/A |  | 1)",
        R"([HKEY_CLASSES_ROOT\.gone])", R"(@="no\\such")", R"([HKEY_CLASSES_ROOT\.none])"}},
  };
  for (const auto &C : Cases) {
    Renew();
    Load(C.Registry);
    EXPECT_EQ(Scan(C.Area), C.Lines);
    EXPECT_EQ(ToUtf8(Run_->Status.Texts.back()), ToUtf8(C.Status));
  }
}

TEST_P(FileTypeScans, ExplorerExtensionsAndMachineClassesAreFoundAndHeldBack) {
  Load(uR"([HKEY_CLASSES_ROOT\Applications\known.exe]
[HKEY_CLASSES_ROOT\there]
[HKEY_LOCAL_MACHINE\Software\Microsoft\Windows\CurrentVersion\App Paths\path.exe]
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts\.a]
"Application"="gone.exe"
"Progid"="no type"
"other"="gone.exe"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts\.a\OpenWithList]
"a"="gone2.exe"
"b"="KNOWN.exe"
"c"="C:\\x\\gone.exe"
"MRUList"="ab"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts\.b]
"Application"="path.exe"
"progid"="There"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts\.chosen\UserChoice]
"Progid"="no type"
[HKEY_CURRENT_USER\Software\Microsoft\Windows\CurrentVersion\Explorer\FileExts\.none]
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\.gone]
@="no type"
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\.user]
@="there"
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\.machine]
@="mine"
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\.kept]
@="no type"
"PerceivedType"="text"
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\empty]
[HKEY_LOCAL_MACHINE\SOFTWARE\Classes\mine]
@="Mine"
)");
  const auto HeldBack = [&](int Area, std::u16string_view Front) {
    EXPECT_EQ(Scan(Area), TLines()) << "a safe list looks after this branch";
    TLines Lines;
    for (const TProtectedItem &Item : Run_->Engine->ProtectedItems()) {
      EXPECT_TRUE(Item.KeyPath.starts_with(Front));
      Lines.push_back(
          ToUtf8(Item.KeyPath.substr(Front.size()) + u" | " + Item.ValueName + u" | " + Item.Data));
    }
    return Lines;
  };
  EXPECT_EQ(HeldBack(14, u"HKEY_CURRENT_USER\\Software\\Microsoft\\Windows\\CurrentVersion\\"
                         u"Explorer\\FileExts\\"),
            (TLines{R"(.a | Application | gone.exe)", R"(.a | Progid | no type)",
                    R"(.a\OpenWithList | a | gone2.exe)", R"(.none | N/A | )"}));
  EXPECT_EQ(Run_->Status.Texts.back(), u"Scanning...Unused File Extensions");
  EXPECT_EQ(HeldBack(15, u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Classes\\"),
            (TLines{R"(.gone |  | no type)", R"(empty | N/A | )"}));
  EXPECT_EQ(Run_->Status.Texts.back(), u"Scanning...ActiveX and Class Issues");
}

TEST_P(FileTypeScans, AnApplicationLivesAsLongAsOneOfItsCommandsMay) {
  Load(uR"([HKEY_CLASSES_ROOT\Applications\1 one lives\shell\a\command]
@="C:\\gone.exe"
[HKEY_CLASSES_ROOT\Applications\1 one lives\shell\b\command]
@="C:\\here.exe"
[HKEY_CLASSES_ROOT\Applications\2 none can be told\shell\a\command]
@="gone.exe"
[HKEY_CLASSES_ROOT\Applications\3 one is dead, one can't be told\shell\a\command]
@="notepad.exe %1"
[HKEY_CLASSES_ROOT\Applications\3 one is dead, one can't be told\shell\b\command]
@="C:\\gone.exe"
[HKEY_CLASSES_ROOT\Applications\4 no command]
"NoOpenWith"=""
[HKEY_CLASSES_ROOT\Applications\5 one can't be read\shell\a\command]
@="C:\\gone.exe"
[HKEY_CLASSES_ROOT\Applications\5 one can't be read\shell\b\command]
@="C:\\here.exe"
)");
  const bool Denied =
      Deny(u"HKEY_CLASSES_ROOT\\Applications\\5 one can't be read\\shell\\b\\command");
  EXPECT_EQ(Keys(2), u"HKEY_CLASSES_ROOT\\Applications\\3 one is dead, one can't be told ");
  EXPECT_EQ(Run_->Engine->UnreadableKeys().size(), Denied ? 1u : 0u);
}

TEST_P(FileTypeScans, AnExtensionIsKeptAliveByMoreThanItsType) {
  Load(uR"([HKEY_CLASSES_ROOT\there]
@="There"
[HKEY_CLASSES_ROOT\.01 its type]
@="THERE"
[HKEY_CLASSES_ROOT\.02 another type]
@="no type"
[HKEY_CLASSES_ROOT\.02 another type\OpenWithProgids]
"no other"=""
"there"=""
[HKEY_CLASSES_ROOT\.03 no other type either]
@="no type"
[HKEY_CLASSES_ROOT\.03 no other type either\OpenWithProgids]
"no other"=hex(0):
[HKEY_CLASSES_ROOT\.04 actions]
@="no type"
[HKEY_CLASSES_ROOT\.04 actions\shell]
[HKEY_CLASSES_ROOT\.05 handlers]
@="no type"
[HKEY_CLASSES_ROOT\.05 handlers\ShellEx\x]
[HKEY_CLASSES_ROOT\.06 text]
@="no type"
[HKEY_CLASSES_ROOT\.06 text\PersistentHandler]
[HKEY_CLASSES_ROOT\.07 perceived]
@="no type"
"PerceivedType"="text"
[HKEY_CLASSES_ROOT\.08 no type named]
"Content Type"="text/x"
[HKEY_CLASSES_ROOT\.09 a number]
@=dword:1
[HKEY_CLASSES_ROOT\.10 content type alone]
@="no type"
"Content Type"="text/x"
)");
  EXPECT_EQ(Keys(3), u"HKEY_CLASSES_ROOT\\.03 no other type either "
                     u"HKEY_CLASSES_ROOT\\.10 content type alone ");
}

TEST_P(FileTypeScans, MoveTheBarOncePerNameAndStopAtOnce) {
  Load(uR"([HKEY_CLASSES_ROOT\.a]
[HKEY_CLASSES_ROOT\.b]
[HKEY_CLASSES_ROOT\CLSID]
[HKEY_CLASSES_ROOT\x]
)");
  const auto LastPosition = [&] {
    const auto &States = Run_->Progress.States;
    return States[States.size() - 1 - 1 - 1 - 1].first; // the run-out and the last maximum
  };
  EXPECT_EQ(Keys(3), u"HKEY_CLASSES_ROOT\\.a HKEY_CLASSES_ROOT\\.b HKEY_CLASSES_ROOT\\x ");
  EXPECT_EQ(Run_->Progress.Max(), 100);
  EXPECT_EQ(LastPosition(), 2 + 3) << "each scanner, each name";
  Run_->Messages->OnPump = [&] { Run_->Engine->Stop(); };
  EXPECT_EQ(Run_->Scan(TTestScan::Only(3)), 0);
}

// A user's class hides the machine's of the same name, and both together are looked at.
TEST(FileTypesOfTwo, AreJudgedAsTheyShow) {
  TTestScan Run(MemoryRegistry(uR"([HKEY_LOCAL_MACHINE\Software\Classes\hidden\shell\open\command]
@="C:\\gone.exe"
[HKEY_CURRENT_USER\Software\Classes\hidden\shell\open\command]
@="C:\\here.exe"
[HKEY_CURRENT_USER\Software\Classes\empty]
[HKEY_LOCAL_MACHINE\Software\Classes\empty]
"x"="filled"
[HKEY_LOCAL_MACHINE\Software\Classes\.x]
@="user"
[HKEY_CURRENT_USER\Software\Classes\user]
@="The user's"
)"),
                TypeMachine(), ScannerTable());
  EXPECT_EQ(Run.Scan(u"01100000000000100"), 0);
  EXPECT_TRUE(Run.Engine->ProtectedItems().empty());
}

// ---- the rule of commands and icons ------------------------------------------------

std::string NameOf(TFate Fate) {
  return Fate == TFate::Untold ? "untold" : Fate == TFate::Alive ? "alive" : "dead";
}

TEST(CommandRules, JudgeOnlyWhatCertainlyIsGone) {
  TMachine Where = TypeMachine();
  Where.Wow64 = true;
  Where.Environment = {{u"Tools", u"C:\\Tools"}, {u"Loop", u"%Loop%"}};
  Where.Unreadable = {u"C:\\locked"};
  Where.Files.insert(Where.Files.end(),
                     {u"C:\\here.ax", u"C:\\run.cmd", u"C:\\WINNT\\System32\\only64.exe",
                      u"C:\\Program Files\\App\\64.exe", u"C:\\Program Files (x86)\\App\\32.exe",
                      u"C:\\Users\\me\\AppData\\Local\\Microsoft\\WindowsApps\\alias.exe",
                      u"C:\\dir.exe files\\real.bat"});
  Where.Links = {u"C:\\Users\\me\\AppData\\Local\\Microsoft\\WindowsApps\\alias.exe"};
  TTestScan Run(MemoryRegistry(u""), Where);
  Run.Scan(std::u16string(AreaCount, u'0')); // sets the engine up
  using enum TFate;
  static const struct {
    const char *Why;
    std::u16string_view Text;
    TFate Fate;
    bool Expandable = false;
  } Cases[] = {
      {"there", u"C:\\here.exe", Alive},
      {"gone", u"C:\\gone.exe", Dead},
      {"gone, with arguments", u"C:\\Program Files\\Old App\\gone.exe /x %1", Dead},
      {"quoted, with arguments", u"\"C:\\Old App\\gone.exe\" \"%1\"", Dead},
      {"quoted, and there", u"\"C:\\two words.exe\" /x", Alive},
      {"unquoted blanks and arguments", u"C:\\two words.exe /x readme.txt", Alive},
      {"an icon", u"C:\\gone.ico", Dead},
      {"an icon's number", u"C:\\gone.dll,3", Dead},
      {"a negative number", u"C:\\gone.dll,-3", Dead},
      {"a negative number, there", u"C:\\here.ico,-101", Alive},
      {"the file itself", u"%1", Untold},
      {"the file itself, quoted", u"\"%1\" %*", Untold},
      {"a text resource", u"@C:\\gone.dll,-123", Untold},
      {"rundll32 with a name", u"rundll32.exe gone.dll,Entry", Untold},
      {"rundll32 with a path", u"rundll32 C:\\gone.dll,Entry", Untold},
      {"rundll32 itself with a path", u"C:\\WINNT\\rundll32.exe C:\\gone.dll,Entry", Untold},
      {"the installer", u"msiexec /x{12345678-0000-0000-0000-000000000000}", Untold},
      {"an unplugged drive", u"X:\\gone.exe", Untold},
      {"a removable drive", u"R:\\gone.exe", Untold},
      {"a network drive", u"N:\\gone.exe", Untold},
      {"a server", u"\\\\server\\share\\gone.exe", Untold},
      {"no permission", u"C:\\locked\\gone.exe", Alive},
      {"an unknown variable", u"%Nothing%\\gone.exe", Untold},
      {"a variable in a text that is none", u"%Tools%\\gone.exe", Untold},
      {"a variable of the environment", u"%tools%\\gone.exe", Dead, true},
      {"a variable that names itself", u"%Loop%\\gone.exe", Untold, true},
      {"a lone percent sign", u"C:\\100%\\gone.exe", Untold, true},
      {"Windows' folder", u"%windir%\\gone.exe", Dead},
      {"a program in the other half", u"%SystemRoot%\\system32\\only64.exe", Alive},
      {"in neither half", u"%SystemRoot%\\system32\\gone.exe", Dead},
      {"the other program folder", u"C:\\Program Files (x86)\\App\\64.exe", Alive},
      {"a variable for either", u"%ProgramFiles%\\App\\32.exe /x", Alive},
      {"a packaged program's alias",
       u"C:\\Users\\me\\AppData\\Local\\Microsoft\\WindowsApps\\alias.exe", Alive},
      {"a folder", u"C:\\folder.app", Alive},
      {"no extension", u"C:\\gone", Untold},
      {"two letters", u"C:\\gone.ax", Dead},
      {"a long extension", u"C:\\gone.html", Untold},
      {"what is cut too late", u"C:\\here.ax, 1", Alive},
      {"a script, and a file for it", u"\"C:\\run.cmd\" notes.txt", Alive},
      {"a program without its extension", u"C:\\here notes.txt", Alive},
      {"an extension inside a folder's name", u"C:\\dir.exe files\\real.bat x", Alive},
      {"more than one path", u"C:\\gone.exe;C:\\gone2.exe", Untold},
      {"a pattern", u"C:\\gon*.exe", Untold},
      {"relative", u"gone.exe", Untold},
      {"empty", u"", Untold},
  };
  for (const auto &C : Cases) {
    const TRegType Type = C.Expandable ? TRegType::ExpandString : TRegType::String;
    const TRegData Data(Type, C.Text.data(), C.Text.size() * sizeof(char16_t));
    EXPECT_EQ(NameOf(JudgeCommand(*Run.Engine, Data).Fate), NameOf(C.Fate)) << C.Why;
  }
  EXPECT_EQ(JudgeCommand(*Run.Engine, TRegData(TRegType::Binary, u"C:\\gone.exe", 22)).Fate,
            Untold);
}

} // namespace
} // namespace hivesweep
