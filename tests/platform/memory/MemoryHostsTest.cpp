// The texts from which a registry and a machine in memory are made.
#include <gtest/gtest.h>

#include "platform/memory/Machine.h"
#include "platform/memory/MemoryRegistry.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

constexpr std::string_view Header = "Windows Registry Editor Version 5.00\r\n";

// "name:type:bytes in hexadecimal" of each value, a blank between.
std::string ValuesOf(TRegistryHost &Registry, TRegRoot Root, std::u16string_view Path) {
  const TRegOpened Opened = Registry.Open(Root, Path);
  if (!Opened.Key)
    return "no key";
  TRegValueList Values;
  Opened.Key->Values(Values);
  std::string Out;
  for (std::size_t Index = 0; Index < Values.Count(); ++Index) {
    Out += ToUtf8(Values[Index].Name) + ":" +
           std::to_string(static_cast<unsigned>(Values[Index].Data.Type())) + ":";
    for (const std::byte Byte : Values[Index].Data.Bytes()) {
      char Hex[3];
      std::snprintf(Hex, sizeof Hex, "%02x", std::to_integer<unsigned>(Byte));
      Out += Hex;
    }
    Out += " ";
  }
  return Out;
}

TEST(RegistryText, UnderstandsWhatEditorsWrite) {
  static const struct {
    const char *Why;
    std::string_view Text;
    std::string_view Values; // of HKEY_CURRENT_USER\K
  } Cases[] = {
      {"string", "[HKEY_CURRENT_USER\\K]\n\"a\\\\b\\\"\"=\"\\\\\\\"\"", "a\\b\":1:5c0022000000 "},
      {"default value, comments and blanks",
       "; x\n\n  [HKEY_CURRENT_USER\\K] ; y\n @ = \"\" ; z\r\n", ":1:0000 "},
      {"a string over several lines", "[HKEY_CURRENT_USER\\K]\r\n\"a\"=\"1\r\n2\"\r\n\"b\"=\"\"",
       "a:1:31000d000a0032000000 b:1:0000 "},
      {"escaped line ends and zeros", "[HKEY_CURRENT_USER\\K]\n\"a\"=\"\\r\\n\\0\"",
       "a:1:0d000a0000000000 "},
      {"numbers", "[HKEY_CURRENT_USER\\K]\n\"a\"=dword:0000001A\n\"b\"=DWORD:f",
       "a:4:1a000000 b:4:0f000000 "},
      {"bytes over lines",
       "[HKEY_CURRENT_USER\\K]\n\"a\"=hex:01,\\\r\n  2,\\\n  ff\n\"b\"=hex:\n\"c\"=hex:01,",
       "a:3:0102ff b:3: c:3:01 "},
      {"lines that end in CR alone, as backups break them",
       "[HKEY_CURRENT_USER\\K]\r\n\"a\"=hex:01,\\\r02\r\n\"b\"=dword:1\r\n",
       "a:3:0102 b:4:01000000 "},
      {"any type", "[HKEY_CURRENT_USER\\K]\n\"a\"=hex(0):\n\"b\"=hex(b):01\n\"c\"=hex(ffff1234):02",
       "a:0: b:11:01 c:4294906420:02 "},
      {"a bracket in a name, a backslash at the end", "[HKEY_CURRENT_USER\\K\\]\n\"]\"=\"\"",
       "]:1:0000 "},
      {"the last of two counts, in the first one's place",
       "[HKEY_CURRENT_USER\\K]\n\"A\"=dword:1\n\"b\"=dword:1\n[hkey_current_user\\k]\n\"a\"=dword:"
       "2",
       "A:4:02000000 b:4:01000000 "},
      {"deletions",
       "[HKEY_CURRENT_USER\\K]\n\"a\"=\"\"\n\"b\"=\"\"\n\"A\"=-\n[-HKEY_CURRENT_USER\\K\\X]",
       "b:1:0000 "},
      {"a key deleted and made again",
       "[HKEY_CURRENT_USER\\K]\n\"a\"=\"\"\n[-HKEY_CURRENT_USER\\K]\n[HKEY_CURRENT_USER\\K]", ""},
  };
  for (const auto &C : Cases) {
    TMemoryRegistry Registry;
    const auto Error = Registry.LoadText(std::string(Header) + std::string(C.Text));
    EXPECT_FALSE(Error) << C.Why << ": " << (Error ? ToUtf8(Error->Message) : "");
    EXPECT_EQ(ValuesOf(Registry, TRegRoot::CurrentUser, u"K"), C.Values) << C.Why;
  }
}

TEST(RegistryText, IsReadInItsEncoding) {
  const std::u16string Text = FromUtf8(Header) + u"[HKEY_CURRENT_USER\\K]\r\n\"\u00E4\u65E5\"=\"\"";
  const std::string Old = "REGEDIT4\n\n[HKEY_CURRENT_USER\\K]\n\"\xE4\"=hex(2):e4,00\n\"b\"=hex:e4";
  for (const std::string &Bytes :
       {ToUtf8(Text), "\xEF\xBB\xBF" + ToUtf8(Text), Utf16Bytes(u"\uFEFF" + Text)}) {
    TMemoryRegistry Registry;
    EXPECT_FALSE(Registry.LoadText(Bytes));
    EXPECT_EQ(ValuesOf(Registry, TRegRoot::CurrentUser, u"k"), "\u00E4\u65E5:1:0000 ");
  }
  TMemoryRegistry Registry;
  EXPECT_FALSE(Registry.LoadText(Old));
  EXPECT_EQ(ValuesOf(Registry, TRegRoot::CurrentUser, u"K"), "\u00E4:2:e4000000 b:3:e4 ")
      << "texts are widened, bytes are not";
}

TEST(RegistryText, MalformedLinesAreNamedAndChangeNothing) {
  static const struct {
    const char *Why;
    std::string_view Text; // behind the header, so its first line is line 2
    std::size_t Line;
  } Cases[] = {
      {"no bracket", "[HKEY_CURRENT_USER\\K", 2},
      {"text behind a key", "\n[HKEY_CURRENT_USER\\K] x", 3},
      {"no root", "[HKLM\\K]", 2},
      {"a part without a name", "[HKEY_CURRENT_USER\\\\K]", 2},
      {"a value outside a key", "\"a\"=\"\"", 2},
      {"a value below a deleted key", "[-HKEY_CURRENT_USER\\K]\n\"a\"=\"\"", 3},
      {"a whole root", "[-HKEY_CURRENT_USER]", 2},
      {"no equals sign", "[HKEY_CURRENT_USER\\K]\n\"a\" \"b\"", 3},
      {"no data", "[HKEY_CURRENT_USER\\K]\n\"a\"=", 3},
      {"another kind of data", "[HKEY_CURRENT_USER\\K]\n\"a\"=str:x", 3},
      {"a forgotten quote", "[HKEY_CURRENT_USER\\K]\n\"a\"=\"x\n\"b\"=\"y\"\n", 3},
      {"a forgotten quote at the end", "[HKEY_CURRENT_USER\\K]\n\"a\"=\"x\n\n\n", 3},
      {"a single backslash", "[HKEY_CURRENT_USER\\K]\n\"a\"=\"C:\\dir\"", 3},
      {"text behind a string", "[HKEY_CURRENT_USER\\K]\n\"a\"=\"x\" y", 3},
      {"nine digits", "[HKEY_CURRENT_USER\\K]\n\"a\"=dword:123456789", 3},
      {"no digit", "[HKEY_CURRENT_USER\\K]\n\"a\"=dword:", 3},
      {"three digits in a byte", "[HKEY_CURRENT_USER\\K]\n\"a\"=hex:01,\\\n 123", 4},
      {"no byte between commas", "[HKEY_CURRENT_USER\\K]\n\"a\"=hex:01,,02", 3},
      {"a type without its end", "[HKEY_CURRENT_USER\\K]\n\"a\"=hex(2:00", 3},
      {"any other line", "[HKEY_CURRENT_USER\\K]\nhello", 3},
  };
  for (const auto &C : Cases) {
    TMemoryRegistry Registry;
    const auto Error = Registry.LoadText(std::string(Header) + std::string(C.Text));
    ASSERT_TRUE(Error) << C.Why;
    EXPECT_EQ(Error->Line, C.Line) << C.Why << ": " << ToUtf8(Error->Message);
    EXPECT_NE(Error->Message, u"") << C.Why;
    EXPECT_EQ(ValuesOf(Registry, TRegRoot::CurrentUser, u"K"), "no key") << C.Why;
  }
  for (const std::string_view Bytes :
       {"", "[HKEY_CURRENT_USER\\K]", "REGEDIT5\n", "\xFF\xFE\x41"}) {
    TMemoryRegistry Registry;
    EXPECT_EQ(Registry.LoadText(Bytes).value_or(TTextError()).Line, 1u) << Bytes;
  }
}

TEST(RegistryText, AKeyMayBeAsDeepAsWindowsHasThem) {
  const auto Text = [](std::size_t Levels) {
    std::string Out = std::string(Header) + "[HKEY_CURRENT_USER";
    for (std::size_t Level = 1; Level < Levels; ++Level)
      Out += "\\k";
    return Out + "]";
  };
  TMemoryRegistry Registry;
  EXPECT_FALSE(Registry.LoadText(Text(512)));
  for (const std::size_t Levels : {513, 12'000})
    EXPECT_EQ(Registry.LoadText(Text(Levels)).value_or(TTextError()).Line, 2u) << Levels;
}

TEST(MemoryRegistry, FreesATreeOfAnyDepth) {
  std::u16string Path = u"k";
  for (int Level = 1; Level < 100'000; ++Level)
    Path += u"\\k";
  TMemoryRegistry Registry;
  const auto User = Registry.Open(TRegRoot::CurrentUser, u"", TRegAccess::Full).Key;
  const auto Deepest = User->Create(Path).Key; // is still open when the rest is freed
  ASSERT_TRUE(Deepest);
  EXPECT_EQ(User->DeleteTree(u"k"), TRegStatus::Ok);
  EXPECT_TRUE(User->Create(Path).Created);
}

TEST(RegistryText, CutAnywhereIsReadOrRefusedButNeverFatal) {
  const std::string Whole =
      std::string(Header) +
      "[HKEY_CURRENT_USER\\K]\r\n@=\"a\\\\b\"\r\n\"c\"=hex(2):41,00,\\\r\n  00,00\r\n"
      "\"d\"=dword:1\r\n[-HKEY_CURRENT_USER\\L]\r\n\"e\"=-";
  std::size_t Read = 0;
  for (std::size_t Length = 0; Length <= Whole.size(); ++Length) {
    TMemoryRegistry Registry;
    Read += Registry.LoadText(Whole.substr(0, Length)) ? 0 : 1;
  }
  EXPECT_GT(Read, 20u);
  EXPECT_LT(Read, Whole.size() / 2);
}

TEST(ClassesRoot, ShowsTheUsersClassesOverTheMachines) {
  TMemoryRegistry Registry;
  ASSERT_FALSE(Registry.LoadText(std::string(Header) + R"(
[HKEY_CLASSES_ROOT\.x]
@="machine"
"only machine"=""
[HKEY_CLASSES_ROOT\m]
[HKEY_LOCAL_MACHINE\software\classes\n]
[HKEY_CURRENT_USER\Software\Classes\.X]
@="user"
[HKEY_CURRENT_USER\Software\Classes\u]
)"));
  const TRegOpened Root = Registry.Open(TRegRoot::ClassesRoot, u"");
  std::vector<std::u16string> Names;
  Root.Key->SubkeyNames(Names);
  EXPECT_EQ(Names, (std::vector<std::u16string>{u".X", u"m", u"n", u"u"}));
  TRegCounts Counts;
  Root.Key->Counts(Counts);
  EXPECT_EQ(Counts.Subkeys, 4u);
  EXPECT_EQ(ValuesOf(Registry, TRegRoot::ClassesRoot, u".x"),
            ":1:75007300650072000000 only machine:1:0000 ");
  // A name that a text has spelled keeps that spelling; one that was only passed
  // through takes it from the first text that spells it.
  Registry.Open(TRegRoot::LocalMachine, u"").Key->SubkeyNames(Names);
  EXPECT_EQ(Names, std::vector<std::u16string>{u"software"});
  // Deleting takes the user's key first and leaves the machine's to be seen.
  EXPECT_EQ(Root.Key->DeleteTree(u".x"), TRegStatus::Ok);
  EXPECT_EQ(ValuesOf(Registry, TRegRoot::ClassesRoot, u".x"),
            ":1:6d0061006300680069006e0065000000 only machine:1:0000 ");
  EXPECT_EQ(TMemoryRegistry().Open(TRegRoot::ClassesRoot, u"").Status, TRegStatus::NotFound);
}

TEST(ClassesRoot, WhatIsWrittenGoesToTheUsersClassesWhereTheyHaveTheKey) {
  const struct {
    const char *Why;
    std::u16string_view From; // the key that is open, below HKEY_CLASSES_ROOT
    std::u16string_view Path;
    bool Created;
    TRegRoot Owner;
  } Cases[] = {
      {"nobody has it", u"", u"new\\a", true, TRegRoot::LocalMachine},
      {"the user has its parent", u"", u"u\\a\\b", true, TRegRoot::CurrentUser},
      {"the machine has its parent", u"", u"m\\a", true, TRegRoot::LocalMachine},
      {"both have its parent", u"", u"both\\a", true, TRegRoot::CurrentUser},
      {"the machine has more of it", u"", u"both\\m\\a", true, TRegRoot::LocalMachine},
      {"below the user's key", u"u", u"a", true, TRegRoot::CurrentUser},
      {"below one of both", u"both", u"a", true, TRegRoot::CurrentUser},
      {"both have it", u"", u"both", false, TRegRoot::CurrentUser},
      {"the machine has it", u"both", u"m", false, TRegRoot::LocalMachine},
  };
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Why);
    TMemoryRegistry Registry;
    ASSERT_FALSE(Registry.LoadText(std::string(Header) + R"(
[HKEY_LOCAL_MACHINE\Software\Classes\m]
[HKEY_LOCAL_MACHINE\Software\Classes\both\m]
[HKEY_CURRENT_USER\Software\Classes\u]
[HKEY_CURRENT_USER\Software\Classes\both]
)"));
    const auto From = Registry.Open(TRegRoot::ClassesRoot, C.From, TRegAccess::Full).Key;
    const TRegOpened Made = From->Create(C.Path);
    ASSERT_TRUE(Made.Key);
    EXPECT_EQ(Made.Created, C.Created);
    EXPECT_EQ(Made.Key->SetValue(u"v", TRegType::None, {}), TRegStatus::Ok);
    std::u16string Path = u"Software\\Classes\\";
    Path.append(C.From).append(C.From.empty() ? u"" : u"\\").append(C.Path);
    for (const TRegRoot Root : {TRegRoot::CurrentUser, TRegRoot::LocalMachine})
      EXPECT_EQ(ValuesOf(Registry, Root, Path) == "v:0: ", Root == C.Owner);
  }
}

TEST(MachineText, DescribesAMachine) {
  const auto Parsed = ParseMachine(uR"(; comment
[machine]
WinDir = D:\WINNT\
TEMPDIR=D:\Temp
AppData=D:\Users\me
StartMenu=D:\Users\me\Menu\
UserKey=S-1-5-21-1
Wow64=1
[Drives]
d=Fixed
X=network
[Environment]
Path=a=b
[Shortcuts]
D:\Users\me\Desktop\App.lnk = D:\Gone\app.exe
[Files]
D:\WINNT\system32\real.dll
D:\Program Files\App\
)");
  ASSERT_TRUE(std::holds_alternative<TMachine>(Parsed));
  TPlatform Platform = MakeMemoryPlatform(nullptr, std::get<TMachine>(Parsed));
  EXPECT_EQ(Platform.Folders->Windows(), u"D:\\WINNT");
  EXPECT_EQ(Platform.Folders->Temp(), u"D:\\Temp\\");
  EXPECT_EQ(Platform.Folders->Special(TSpecialFolder::AppData), u"D:\\Users\\me");
  EXPECT_EQ(Platform.Folders->Special(TSpecialFolder::CommonAppData), u"");
  EXPECT_EQ(Platform.Drives->TypeOf(u"D:\\"), TDriveType::Fixed);
  EXPECT_EQ(Platform.Drives->TypeOf(u"x:/"), TDriveType::Network);
  EXPECT_EQ(Platform.Drives->TypeOf(u"C:\\"), TDriveType::NoRoot) << "not named";
  EXPECT_EQ(Platform.System->Environment(u"PATH"), u"a=b");
  EXPECT_EQ(Platform.System->Environment(u"none"), std::nullopt);
  EXPECT_TRUE(Platform.System->IsWow64());
  EXPECT_EQ(Platform.System->UserKey(), u"S-1-5-21-1");
  EXPECT_EQ(Platform.Folders->Special(TSpecialFolder::StartMenu), u"D:\\Users\\me\\Menu");
  EXPECT_EQ(Platform.Files->Look(u"D:\\Users\\me\\Menu"), TPathState::Folder);
  EXPECT_EQ(Platform.Files->Look(u"D:\\Users\\me\\desktop\\app.lnk"), TPathState::File);
  EXPECT_EQ(Platform.Shell->ShortcutTarget(u"D:\\Users\\me\\desktop\\app.lnk"),
            u"D:\\Gone\\app.exe");
  EXPECT_EQ(Platform.Files->Look(u"D:\\Program Files\\app"), TPathState::Folder);
  // A 32-bit program is shown another system folder, and the real one by its alias.
  EXPECT_EQ(Platform.Files->Look(u"D:\\WINNT\\System32\\real.dll"), TPathState::Missing);
  EXPECT_EQ(Platform.Files->Look(u"D:\\WINNT\\Sysnative\\real.dll"), TPathState::File);
}

TEST(MachineText, MalformedLinesAreNamed) {
  static const struct {
    std::u16string_view Text;
    std::size_t Line;
  } Cases[] = {
      {u"WinDir=C:\\W", 1},
      {u"[Machine]\nWinDir", 2},
      {u"[Machine]\nWindow=C:\\W", 2},
      {u"[Machine]\n\nWinDir=W", 3},
      {u"[Machine]\nWow64=yes", 2},
      {u"[Drive]", 1},
      {u"[Drives", 1},
      {u"[Drives]\nCC=fixed", 2},
      {u"[Drives]\n1=fixed", 2},
      {u"[Drives]\nC=hard", 2},
      {u"[Files]\nC:\\a\nrelative\\b", 3},
      {u"[Files]\nC:\\a?", 2},
      {u"[Environment]\n=x", 2},
      {u"[Shortcuts]\nApp.lnk=C:\\x", 2},
  };
  for (const auto &C : Cases) {
    const auto Parsed = ParseMachine(C.Text);
    ASSERT_TRUE(std::holds_alternative<TTextError>(Parsed)) << ToUtf8(C.Text);
    EXPECT_EQ(std::get<TTextError>(Parsed).Line, C.Line) << ToUtf8(C.Text);
  }
}

} // namespace
} // namespace hivesweep
