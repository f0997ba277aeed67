#include "engine/ExportLines.h"
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

class ComScan : public TScannerTest {
protected:
  std::u16string Classes() { return Keys(1, u"HKEY_CLASSES_ROOT\\CLSID\\"); }
};

INSTANTIATE_TEST_SUITE_P(Registries, ComScan, testing::ValuesIn(AllRegistries()), NameOfKind);

TEST_P(ComScan, ClassesLeaveTheirTexts) {
  Load(uR"([HKEY_CLASSES_ROOT\CLSID\{1}\InProcServer32]
@=" \"%systemroot%\\Gone.dll\" "
"ThreadingModel"="Both"
[HKEY_CLASSES_ROOT\CLSID\{2}\DefaultIcon]
@="C:\\gone.ico,1"
"Second"=""
[HKEY_CLASSES_ROOT\CLSID\{3}\ProgID]
@=" "
[HKEY_CLASSES_ROOT\CLSID\{4}\LocalServer32]
@="C:\\Gone\\gone.exe /s"
)");
  // The key is the problem, so it alone is deleted; the kind says key, even for a file.
  EXPECT_EQ(
      Scan(1),
      (TLines{
          R"(ActiveX and Class Issues | HKEY_CLASSES_ROOT\CLSID\{1}\InProcServer32 | N/A | C:\WINNT\Gone.dll | 1)",
          R"(Application Icon | HKEY_CLASSES_ROOT\CLSID\{2}\DefaultIcon | N/A | C:\gone.ico,1 | 1)",
          R"(Empty Registry Key | HKEY_CLASSES_ROOT\CLSID\{3}\ProgID | N/A |  | 1)",
          R"(Empty Registry Key | HKEY_CLASSES_ROOT\CLSID\{4}\LocalServer32 | N/A | C:\Gone\gone.exe /s | 1)",
          R"([HKEY_CLASSES_ROOT\CLSID\{1}\InProcServer32])", R"(@="C:\\WINNT\\Gone.dll")",
          R"([HKEY_CLASSES_ROOT\CLSID\{2}\DefaultIcon])", R"(@="C:\\gone.ico,1")",
          R"([HKEY_CLASSES_ROOT\CLSID\{3}\ProgID])",
          R"([HKEY_CLASSES_ROOT\CLSID\{4}\LocalServer32])", R"(@="C:\\Gone\\gone.exe /s")"}));
  EXPECT_EQ(Run_->Status.Texts.back(), u"Scanning...ActiveX and Class Issues");
}

TEST_P(ComScan, LibrariesLeaveTheirTexts) {
  Load(uR"([HKEY_CLASSES_ROOT\TypeLib\{1}\1.0\0\Win32]
@="C:\\gone.tlb"
[HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\0\win16]
[HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\0\win32]
@="C:\\gone.tlb"
[HKEY_CLASSES_ROOT\TypeLib\{3}\1.0\0]
"x"=""
[HKEY_CLASSES_ROOT\TypeLib\{3}\1.0\0\win32]
@=""
[HKEY_CLASSES_ROOT\TypeLib\{4}\1.0\9\win32]
@=""
[HKEY_CLASSES_ROOT\TypeLib\{5}\1.0\FLAGS]
@=""
[HKEY_CLASSES_ROOT\TypeLib\{5}\1.0\HELPDIR]
@="%SystemRoot%\\gone"
)");
  EXPECT_EQ(
      Scan(1),
      (TLines{
          R"(ActiveX and Class Issues | HKEY_CLASSES_ROOT\TypeLib\{1}\1.0\0 | N/A | C:\gone.tlb | 2)",
          R"(ActiveX and Class Issues | HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\0\win32 | N/A | C:\gone.tlb | 2)",
          R"(ActiveX and Class Issues | HKEY_CLASSES_ROOT\TypeLib\{3}\1.0\0\win32 | N/A |  | 1)",
          R"(ActiveX and Class Issues | HKEY_CLASSES_ROOT\TypeLib\{4}\1.0\9 | N/A |  | 1)",
          R"(Empty Registry Key | HKEY_CLASSES_ROOT\TypeLib\{5}\1.0\FLAGS | N/A |  | 1)",
          R"(Nonexistent File Path | HKEY_CLASSES_ROOT\TypeLib\{5}\1.0\HELPDIR | N/A | C:\WINNT\gone | 2)",
          R"([HKEY_CLASSES_ROOT\TypeLib\{1}\1.0\0])", R"(@="C:\\gone.tlb")",
          R"([HKEY_CLASSES_ROOT\TypeLib\{2}\1.0\0\win32])", R"(@="C:\\gone.tlb")",
          R"([HKEY_CLASSES_ROOT\TypeLib\{3}\1.0\0\win32])",
          R"([HKEY_CLASSES_ROOT\TypeLib\{4}\1.0\9])",
          R"([HKEY_CLASSES_ROOT\TypeLib\{5}\1.0\FLAGS])",
          R"([HKEY_CLASSES_ROOT\TypeLib\{5}\1.0\HELPDIR])", R"(@="C:\\WINNT\\gone")"}));
}

TEST_P(ComScan, JudgesTheDefaultValuesOfSevenSubkeys) {
  static const struct {
    const char *Why;
    std::u16string_view Subkey;
    std::u16string_view Content;
    bool Dead;
  } Cases[] = {
      {"any case", u"INPROCSERVER32", uR"(@="C:\\gone.dll")", true},
      {"16-bit", u"InprocServer", uR"(@="C:\\gone.dll")", true},
      {"a name of its own", u"VersionIndependentProgID", uR"(@="C:\\gone.dll")", true},
      {"two letters", u"ToolboxBitmap32", uR"(@="C:\\gone.ax")", true},
      {"expandable", u"LocalServer32",
       u"@=hex(2):43,00,3a,00,5c,00,67,00,2e,00,65,00,78,00,65,00,00,00", true},
      {"a name behind it", u"LocalServer32", uR"(@="C:\\gone.exe,-1")", true},
      {"an index behind an extension that is not cut", u"ToolboxBitmap32", uR"(@="C:\\gone.bmp,1")",
       false},
      {"four letters", u"DefaultIcon", uR"(@="C:\\gone.icon")", false},
      {"no extension", u"LocalServer32", uR"(@="C:\\gone")", false},
      {"there", u"InprocServer32", uR"(@="\"C:\\here.dll\"")", false},
      {"there, with a switch", u"LocalServer32", uR"(@="C:\\here.exe -x.y")", false},
      {"bare name", u"InprocServer32", uR"(@="gone.dll")", false},
      {"two drives", u"LocalServer32", uR"(@="C:\\gone.exe D:\\x.exe")", false},
      {"network", u"InprocServer32", uR"(@="N:\\gone.dll")", false},
      {"can't be looked at", u"InprocServer32", uR"(@="C:\\locked\\a.dll")", false},
      {"ProgID", u"ProgID", uR"(@="Gone.Document.1")", false},
      {"another subkey", u"Programmable", uR"(@="C:\\gone.dll")", false},
      {"shorter than a drive", u"ProgID", uR"(@=":")", false},
      {"only zeros", u"ProgID", u"@=hex(1):00,00,00,00", true},
      {"no data", u"ProgID", u"@=hex(2):", true},
      {"no value at all", u"ProgID", u"", false},
      {"no default value", u"ProgID", uR"("x"="")", false},
      {"empty, but not alone", u"ProgID", u"@=\"\"\n\"x\"=\"\"", false},
      {"empty, with a subkey", u"ProgID", u"@=\"\"\n[HKEY_CLASSES_ROOT\\CLSID\\{1}\\ProgID\\x]",
       false},
      {"no type", u"ProgID", u"@=hex(0):", false},
      {"binary", u"ProgID", u"@=hex:", false},
      {"number", u"ProgID", u"@=dword:0", false},
      {"big-endian", u"ProgID", u"@=hex(5):00,00,00,00", false},
      {"link", u"ProgID", u"@=hex(6):", false},
      {"several texts", u"InprocServer32", u"@=hex(7):43,00,3a,00,5c,00,67,00,2e,00,64,00", false},
      {"64-bit number", u"ProgID", u"@=hex(b):00,00,00,00,00,00,00,00", false},
      {"a type of somebody's own", u"ProgID", u"@=hex(1234):", false},
  };
  for (const auto &C : Cases) {
    Load(u"[-HKEY_CLASSES_ROOT]");
    Load(u"[HKEY_CLASSES_ROOT\\CLSID\\{1}\\" + std::u16string(C.Subkey) + u"]\n" +
         std::u16string(C.Content));
    EXPECT_EQ(Classes(), C.Dead ? u"{1}\\" + std::u16string(C.Subkey) + u" " : std::u16string())
        << C.Why;
  }
}

TEST_P(ComScan, LeavesThreeClassesAloneByTheirExactNames) {
  for (const std::u16string_view Name :
       {u"{6B75345B-AA36-438A-BBE6-4078B4C6984D}", u"{6D84BC07-7979-4E59-9589-17E1E5A8FF55}",
        u"{BE65189A-4770-47A0-9B7B-68827DB1C317}", u"{be65189a-4770-47a0-9b7b-68827db1c318}"})
    Load(u"[HKEY_CLASSES_ROOT\\CLSID\\" + std::u16string(Name) + u"\\ProgID]\n@=\"\"");
  EXPECT_EQ(Classes(), u"{be65189a-4770-47a0-9b7b-68827db1c318}\\ProgID ");
  Load(u"[-HKEY_CLASSES_ROOT]");
  Load(u"[HKEY_CLASSES_ROOT\\CLSID\\{be65189a-4770-47a0-9b7b-68827db1c317}\\ProgID]\n@=\"\"");
  EXPECT_EQ(Classes(), u"{be65189a-4770-47a0-9b7b-68827db1c317}\\ProgID ");
}

TEST_P(ComScan, JudgesALibraryAsItStandsAndItsLastKeysAsFolders) {
  // Below one library.
  static const struct {
    const char *Why;
    std::u16string_view Key;
    std::u16string_view Content;
    bool Dead;
  } Cases[] = {
      {"beside a value", u"a\\0\\win32", u"@=\"C:\\\\gone.tlb\"\n[~L\\a\\0]\n@=\"\"", true},
      {"there", u"b\\0\\win32", uR"(@="C:\\here.dll")", false},
      {"a variable is not resolved", u"c\\0\\win32", uR"(@="%SystemRoot%\\gone.tlb")", false},
      {"quotes stay", u"d\\0\\win32", uR"(@="\"C:\\gone.tlb\"")", false},
      {"a resource", u"e\\0\\win32", uR"(@="C:\\gone.dll\\2")", false},
      {"a blank is text", u"f\\0\\win32", uR"(@=" ")", false},
      {"two letters", u"g\\0\\win32", uR"(@="C:\\gone.ax")", false},
      {"number", u"h\\0\\win32", u"@=dword:1", false},
      {"empty, not alone", u"i\\0\\win32", u"@=\"\"\n\"x\"=\"\"", false},
      {"64-bit", u"j\\0\\win64", uR"(@="C:\\gone.tlb")", false},
      {"locked", u"k\\0\\win32", uR"(@="C:\\locked\\a.tlb")", false},
      {"no locale", u"l", uR"(@="C:\\gone.tlb")", false},
      {"folder there", u"m\\1", uR"(@="C:\\v1.2")", false},
      {"folder gone", u"m\\2", uR"(@="C:\\gone")", true},
      {"folder with a dot", u"m\\3", uR"(@="C:\\gone 1.x")", false},
      {"file gone, with an argument", u"m\\4", uR"(@="C:\\gone.exe /x")", true},
      {"one pair of quotes", u"m\\5", uR"(@="C:\\gone \"a\"")", true},
      {"three quotes", u"m\\6", uR"(@="C:\\gone \"a\"\"")", false},
      {"quotes in front", u"m\\7", uR"(@="\"C:\\gone\"")", false},
      {"flags", u"m\\8", uR"(@="0")", false},
      {"nothing", u"n\\1", u"", false},
      {"empty, not alone", u"n\\2", u"@=\"\"\n\"x\"=\"\"", false},
      {"locked folder", u"n\\3", uR"(@="C:\\locked\\a")", false},
  };
  std::u16string Text;
  std::u16string Dead;
  for (const auto &C : Cases) {
    Text += u"[~L\\" + std::u16string(C.Key) + u"]\n" + std::u16string(C.Content) + u"\n";
    Dead += C.Dead ? std::u16string(C.Key) + u" " : u"";
  }
  ReplaceAllNoAsciiCase(Text, u"[~l", u"[HKEY_CLASSES_ROOT\\TypeLib\\{1}");
  Load(Text);
  EXPECT_EQ(Keys(1, u"HKEY_CLASSES_ROOT\\TypeLib\\{1}\\"), Dead);
}

// ---- registries in a bad state --------------------------------------------------------

TEST_P(ComScan, PassesOverWhatItMayNotOpen) {
  Load(uR"([HKEY_CLASSES_ROOT\CLSID\{1}\ProgID]
@=""
[HKEY_CLASSES_ROOT\CLSID\{2}\ProgID]
@=""
[HKEY_CLASSES_ROOT\CLSID\{2}\InprocServer32]
@="C:\\gone.dll"
[HKEY_CLASSES_ROOT\TypeLib\{3}\1.0\0\win32]
@="C:\\gone.tlb"
)");
  if (!Deny(u"HKEY_CLASSES_ROOT\\CLSID\\{1}") || !Deny(u"HKEY_CLASSES_ROOT\\CLSID\\{2}\\ProgID") ||
      !Deny(u"HKEY_CLASSES_ROOT\\TypeLib\\{3}\\1.0\\0\\win32"))
    GTEST_SKIP() << "this registry denies this user nothing";
  EXPECT_EQ(Classes(), u"{2}\\InprocServer32 ");
  EXPECT_EQ(Run_->Engine->UnreadableKeys().size(), 3u);
}

TEST_P(ComScan, SurvivesKeysThatVanishAndNamesThatNobodyCanOpen) {
  std::u16string Text = u"[HKEY_CLASSES_ROOT\\CLSID\\{0}\\ProgID]\n@=\"\"\n"
                        u"[HKEY_CLASSES_ROOT\\CLSID\\{1}\\ProgID]\n@=\"\"\n"
                        u"[HKEY_CLASSES_ROOT\\TypeLib\\{1}\\1.0\\0\\win32]\n@=\"\"\n"
                        u"[HKEY_CLASSES_ROOT\\CLSID\\{2}\\ProgID]\n@=\"\"\n"
                        u"[HKEY_CLASSES_ROOT\\CLSID\\{2}";
  Text.push_back(u'\0'); // another class than {2}
  Load(Text + u"]\n");
  OnPump_ = [this] {
    if (Run_->Messages->Pumps == 1)
      Load(u"[-HKEY_CLASSES_ROOT\\CLSID\\{1}]\n[-HKEY_CLASSES_ROOT\\TypeLib\\{1}\\1.0]\n");
  };
  EXPECT_EQ(Classes(), u"{0}\\ProgID {2}\\ProgID ");
  ASSERT_EQ(Run_->Engine->UnreadableKeys().size(), 1u) << "what has gone is no failure";
  EXPECT_EQ(Run_->Engine->UnreadableKeys()[0].KeyPath,
            std::u16string(u"HKEY_CLASSES_ROOT\\CLSID\\{2}\0", 28));
}

TEST_P(ComScan, FollowsLinksButNotForEver) {
  Load(uR"([~\Elsewhere\1.0\0\win32]
@="C:\\gone.tlb"
[HKEY_CLASSES_ROOT\TypeLib\{3}\1.0]
)");
  if (!Registry_->Link(u"HKEY_CLASSES_ROOT\\TypeLib\\{1}", u"Elsewhere"))
    GTEST_SKIP() << "this registry has no links";
  EXPECT_TRUE(Registry_->Link(u"HKEY_CLASSES_ROOT\\TypeLib\\{2}", u"No such key"));
  EXPECT_TRUE(Registry_->Link(u"HKEY_CLASSES_ROOT\\TypeLib\\{3}\\1.0\\loop",
                              u"HKEY_CLASSES_ROOT\\TypeLib\\{3}\\1.0\\loop"));
  EXPECT_TRUE(
      Registry_->Link(u"HKEY_CLASSES_ROOT\\TypeLib\\{3}\\1.0\\up", u"HKEY_CLASSES_ROOT\\TypeLib"));
  EXPECT_EQ(Keys(1, u"HKEY_CLASSES_ROOT\\TypeLib\\"), u"{1}\\1.0\\0 ");
}

TEST_P(ComScan, OneClassMayHoldTenThousandSubkeys) {
  std::u16string Text;
  for (std::uint64_t Number = 10'000; Number < 20'000; ++Number)
    Text += u"[HKEY_CLASSES_ROOT\\CLSID\\{1}\\" + ToDecimal(Number) + u"]\n";
  Load(Text + u"[HKEY_CLASSES_ROOT\\CLSID\\{1}\\ProgID]\n@=\"\"\n");
  EXPECT_EQ(Classes(), u"{1}\\ProgID ");
}

// ---- cost -------------------------------------------------------------------------------

TEST(ComScanCost, OpensAndListsOnlyWhatItHasTo) {
  // Of each class: it is opened and listed once, and two of its subkeys are opened and
  // read. Of each library: three levels opened and listed, the last one opened and read.
  constexpr std::uint64_t CallsPerClass = 2 + 2 * 2;
  constexpr std::uint64_t CallsPerLibrary = 3 * 2 + 2;
  const auto Scan = [](std::uint64_t Many) {
    std::u16string Text;
    for (std::uint64_t Number = 0; Number < Many; ++Number) {
      const std::u16string Class = u"[HKEY_CLASSES_ROOT\\CLSID\\{" + ToDecimal(Number) + u"}\\";
      Text += Class + u"InprocServer32]\n@=\"C:\\\\here.dll\"\n" + Class +
              u"ProgID]\n@=\"Here.1\"\n" + Class + u"Programmable]\n" +
              u"[HKEY_CLASSES_ROOT\\TypeLib\\{" + ToDecimal(Number) +
              u"}\\1.0\\0\\win32]\n@=\"C:\\\\here.dll\"\n";
    }
    TFaults Calls;
    TTestScan Run(MemoryRegistry(Text, &Calls), Machine(), ScannerTable());
    EXPECT_EQ(Run.Scan(TTestScan::Only(1)), 0);
    EXPECT_EQ(Run.Engine->AreaResults()[0].Found, 0);
    // A step for each class and library, and at the end what was kept for it.
    const std::uint64_t Work = 2 * Many + 2 + 22; // 2: "CLSID" and "TypeLib"
    EXPECT_EQ(static_cast<std::uint64_t>(Run.Progress.Position()), 2 * Many + (Work + 10) / 20 + 1);
    return Calls.Calls();
  };
  constexpr std::uint64_t Many = 2'000;
  constexpr std::uint64_t CallsOnce = 12; // on the two keys, and on the one that holds them
  const std::uint64_t ForNone = Scan(0);
  EXPECT_LE(Scan(Many) - ForNone, Many * (CallsPerClass + CallsPerLibrary) + CallsOnce);
}

} // namespace
} // namespace hivesweep
