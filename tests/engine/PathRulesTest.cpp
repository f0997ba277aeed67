#include <gtest/gtest.h>

#include "engine/PathRules.h"
#include "engine/ScanDisk.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {
namespace {

TEST(PathRules, CutACommandAfterItsFile) {
  static const struct {
    const char *Why;
    std::u16string_view Text;
    std::u16string_view File;
  } Cases[] = {
      {"icon reference", u"C:\\x\\app.exe,0", u"C:\\x\\app.exe"},
      {"switch", u"C:\\x\\app.EXE /s", u"C:\\x\\app.EXE"},
      {"nothing behind", u"C:\\x\\app.exe", u"C:\\x\\app.exe"},
      {"a quote behind", u"\"C:\\x\\app.exe\" /s", u"\"C:\\x\\app.exe\" /s"},
      {"no extension", u"C:\\x\\app.com /s", u"C:\\x\\app.com /s"},
      {"the list's order decides, not the text's", u"C:\\x\\lib.dll,1 y.exe",
       u"C:\\x\\lib.dll,1 y.exe"},
      {"only the first place counts", u"C:\\a.exe.d\\b.exe /s", u"C:\\a.exe.d\\b.exe /s"},
      {"the short extension keeps one unit more", u"C:\\x\\c.ax2 /r", u"C:\\x\\c.ax2"},
      {"and looks at the one behind that", u"C:\\x\\c.ax /r", u"C:\\x\\c.ax /r"},
      {"a longer extension of that beginning", u"C:\\x\\c.axes,1", u"C:\\x\\c.axes,1"},
      {"empty", u"", u""},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(ExtractFileFromCommand(C.Text), C.File) << C.Why;
}

TEST(PathRules, ReplaceTheNamesOfFolders) {
  std::u16string Text = u"%SYSTEMROOT%\\x;%systemroot%\\%SystemRoot";
  ExpandSystemRoot(Text, u"C:\\Win");
  EXPECT_EQ(Text, u"C:\\Win\\x;C:\\Win\\%SystemRoot");
  Text = u"%programfiles%\\x";
  ExpandProgramFiles(Text, u"D:\\Win");
  EXPECT_EQ(Text, u"D:\\Program Files\\x");
}

TMachine PathMachine() {
  TMachine Machine;
  Machine.WinDir = u"C:\\WINNT";
  Machine.TempDir = u"C:\\Temp\\";
  Machine.Drives = {{u'A', TDriveType::Fixed},
                    {u'C', TDriveType::Fixed},
                    {u'D', TDriveType::Removable},
                    {u'N', TDriveType::Network}};
  Machine.Files = {u"C:\\here.exe",
                   u"C:\\here dir\\",
                   u"C:\\WINNT\\system32\\here.sys",
                   u"C:\\Program Files\\here.dll",
                   u"C:\\Temp\\here.tmp",
                   u"C:\\v1.2\\"};
  Machine.Unreadable = {u"C:\\locked"};
  return Machine;
}

TEST(PathRules, JudgeOnlyWhatIsRecognisablyALocalPath) {
  static const struct {
    const char *Why;
    std::u16string_view Text;
    bool Valid;
  } Cases[] = {
      {"a file that is there", u"C:\\here.exe", true},
      {"a file that is not", u"C:\\gone.exe", false},
      {"lower-case drive", u"c:\\gone.exe", false},
      {"with a switch", u"C:\\gone.exe x", false},
      {"its file there, a switch", u"C:\\here.exe x", true},
      {"a folder that is there", u"C:\\here dir", true},
      {"a folder that is not", u"C:\\gone dir", false},
      {"a folder with a dot in its name", u"C:\\v1.2", true},
      {"a dot too far from the end", u"C:\\gone.html", true},
      {"an icon index", u"C:\\gone.dll,3", false},
      {"an environment variable of Windows", u"%SystemRoot%\\system32\\gone.sys", false},
      {"and its file there", u"%WINDIR%\\system32\\here.sys", true},
      {"the native form", u"\\SystemRoot\\system32\\gone.sys", false},
      {"the object manager's form", u"\\??\\C:\\gone.sys", false},
      {"system drive", u"%systemdrive%\\gone.sys", false},
      {"program files", u"%ProgramFiles%\\here.dll", true},
      {"temporary folder", u"%TEMP%\\gone.tmp", false},
      {"and its file there", u"\"%temp%\\here.tmp\"", true},
      {"another variable", u"%APPDATA%\\gone.exe", true},
      {"a hyphen anywhere", u"C:\\Program Files\\my-app\\gone.exe", true},
      {"a slash", u"C:\\gone\\a/b.exe", true},
      {"a list", u"C:\\gone.exe;x", true},
      {"two drives", u"C:\\gone.exe C:\\x", true},
      {"relative", u"gone.exe", true},
      {"drive A", u"A:\\gone.exe", true},
      {"a removable drive", u"D:\\gone.exe", true},
      {"a network drive", u"N:\\gone.exe", true},
      {"no drive there", u"X:\\gone.exe", true},
      {"rundll32 with a bare name", u"rundll32 shell32.dll,Control", true},
      {"what can't be looked at", u"C:\\locked\\a.exe", true},
      {"a folder that can't be looked at", u"C:\\locked", true},
      {"a name that no file can have", u"C:\\gone?.exe", false},
      {"quotes inside", u"C\":\"\\gone.exe", false},
      {"a quoted drive", u"\"C\":\\gone.exe", false},
      {"too short", u"C:", true},
      {"empty", u"", true},
  };
  TPlatform Platform = MakeMemoryPlatform(MemoryRegistry(u""), PathMachine());
  TScanDisk Disk(*Platform.Files, *Platform.Drives);
  for (const auto &C : Cases)
    EXPECT_EQ(IsPathValid(Disk, {u"C:\\WINNT", u"C:\\Temp\\"}, C.Text), C.Valid) << C.Why;
}

TEST(PathRules, ATargetIsAliveInEitherHalfOfA64BitSystem) {
  TMachine Machine;
  Machine.Wow64 = true;
  Machine.Files = {u"C:\\Program Files\\App\\a.exe", u"C:\\Windows\\System32\\native.exe"};
  Machine.Unreadable = {u"C:\\Program Files\\Locked"};
  TPlatform Platform = MakeMemoryPlatform(MemoryRegistry(u""), Machine);
  static const struct {
    const char *Why;
    std::u16string_view Target;
    bool Missing;
    std::u16string_view Reported;
  } Cases[] = {
      {"there as named", u"C:\\Program Files\\App\\a.exe", false, u"C:\\Program Files\\App\\a.exe"},
      {"in the real system folder", u"C:\\Windows\\system32\\native.exe", false,
       u"C:\\Windows\\system32\\native.exe"},
      {"in the other program folder", u"C:\\Program Files (X86)\\App\\a.exe", false,
       u"C:\\Program Files\\App\\a.exe"},
      {"in neither", u"C:\\Program Files (x86)\\App\\b.exe", true,
       u"C:\\Program Files\\App\\b.exe"},
      {"gone", u"C:\\Program Files\\App\\b.exe", true, u"C:\\Program Files\\App\\b.exe"},
      {"the other one can't be looked at", u"C:\\Program Files (x86)\\Locked\\b.exe", false,
       u"C:\\Program Files\\Locked\\b.exe"},
  };
  EXPECT_EQ(Platform.Files->Look(u"C:\\Windows\\system32\\native.exe"), TPathState::Missing);
  for (const auto &C : Cases) {
    const TTargetCheck Check = CheckTarget64(*Platform.Files, C.Target);
    EXPECT_EQ(Check.Missing, C.Missing) << C.Why;
    EXPECT_EQ(Check.Path, C.Reported) << C.Why;
  }
  EXPECT_EQ(Platform.Files->Look(u"C:\\Windows\\system32\\native.exe"), TPathState::Missing)
      << "the other view is switched on again";
}

} // namespace
} // namespace hivesweep
