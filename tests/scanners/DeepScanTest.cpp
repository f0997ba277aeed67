#include "engine/PhraseMatcher.h"
#include "tests/scanners/ScannerTest.h"

namespace hivesweep {
namespace {

constexpr int Deep = DeepScanArea;

TMachine DeepMachine() {
  TMachine Out;
  Out.TempDir = u"C:\\Temp\\";
  Out.Files = {u"C:\\here.exe", u"C:\\Temp\\mine.tmp"};
  return Out;
}

class DeepScan : public TScannerTest {
protected:
  DeepScan() : TScannerTest(DeepMachine()) {}
};

INSTANTIATE_TEST_SUITE_P(Registries, DeepScan, testing::ValuesIn(AllRegistries()), NameOfKind);

TEST_P(DeepScan, ListsEveryDeadPathOfTheMachineAndTheUser) {
  Load(uR"([HKEY_LOCAL_MACHINE\SOFTWARE\Vendor\App]
@="C:\\gone.exe"
"here"="C:\\here.exe"
"hyphen"="C:\\a-b\\gone.exe"
"number"=dword:1
[HKEY_LOCAL_MACHINE\SYSTEM\App]
"x"="C:\\gone.exe"
[HKEY_CURRENT_USER]
"a root's own value"="C:\\gone.exe"
[HKEY_CURRENT_USER\Own]
"dir"=hex(2):43,00,3a,00,5c,00,67,00,6f,00,6e,00,65,00,00,00
"temp"="%TEMP%\\mine.tmp"
)");
  EXPECT_EQ(Scan(Deep),
            (TLines{R"(Deep Scan | HKEY_LOCAL_MACHINE\SOFTWARE\Vendor\App |  | C:\gone.exe | 2)",
                    R"(Deep Scan | HKEY_CURRENT_USER\Own | dir | C:\gone | 2)",
                    R"([HKEY_LOCAL_MACHINE\SOFTWARE\Vendor\App])", R"(@="C:\\gone.exe")",
                    R"([HKEY_CURRENT_USER\Own])", R"("dir"="C:\\gone")"}));
  EXPECT_EQ(Run_->Status.Texts.back(), u"Scanning...Deep Scan");
}

// Not over a live registry: a 32-bit one has a meaning of its own for that name.
TEST(DeepScanHalves, TheMachinesOtherHalfIsLeftOut) {
  TTestScan Run(MemoryRegistry(uR"([HKEY_LOCAL_MACHINE\SOFTWARE\WOW6432NODE\App]
"x"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\SOFTWARE\Own\Wow6432Node]
"x"="C:\\gone.exe"
)"),
                DeepMachine(), ScannerTable());
  EXPECT_EQ(Run.Scan(TTestScan::Only(Deep)), 1) << "only directly below the software";
}

TEST_P(DeepScan, EachOtherUserHasATemporaryFolderOfHisOwn) {
  Load(uR"([HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows NT\CurrentVersion\ProfileList\S-1-5-2]
"ProfileImagePath"="%SystemDrive%\\Users\\two"
[HKEY_USERS\S-1-5-1\Own]
"current"="C:\\gone.exe"
[HKEY_USERS\S-1-5-2\Environment]
"TEMP"="%USERPROFILE%\\Temp"
[HKEY_USERS\S-1-5-2\Own]
"his"="%TEMP%\\his.tmp"
"mine"="%TEMP%\\mine.tmp"
[HKEY_USERS\S-1-5-2_Classes\Own]
"classes"="C:\\gone.exe"
[HKEY_USERS\S-1-5-3\Own]
"known"="C:\\gone.exe"
"unknown"="%TEMP%\\gone.tmp"
)");
  Where_.UserKey = u"s-1-5-1";
  Where_.Files.emplace_back(u"C:\\Users\\two\\Temp\\his.tmp");
  EXPECT_EQ(Keys(Deep), u"HKEY_USERS\\S-1-5-2\\Own HKEY_USERS\\S-1-5-3\\Own ");
  EXPECT_EQ(Names(Deep), u"known mine ");
}

TEST_P(DeepScan, LeavesOutWhatOtherAreasLookAfter) {
  Load(uR"([HKEY_LOCAL_MACHINE\SOFTWARE\Openoffice]
"kept"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\SOFTWARE\Vendor\Officely\Below]
"x"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion]
"kept"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\SOFTWARE\Microsoft\Windows\CurrentVersion\app paths\Below]
"x"="C:\\gone.exe"
[HKEY_CURRENT_USER\Software\Classes]
"x"="C:\\gone.exe"
[HKEY_CURRENT_USER\Software2\Shell folders]
"x"="C:\\gone.exe"
)");
  EXPECT_EQ(Keys(Deep), u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion "
                        u"HKEY_LOCAL_MACHINE\\SOFTWARE\\Openoffice ");
}

TEST_P(DeepScan, NeverFollowsALink) {
  Load(uR"([HKEY_LOCAL_MACHINE\SOFTWARE\App]
"x"="C:\\gone.exe"
)");
  const std::u16string Software = u"HKEY_LOCAL_MACHINE\\SOFTWARE";
  if (!Registry_->Link(Software + u"\\App\\Loop", Software))
    GTEST_SKIP() << "this registry has no links";
  EXPECT_EQ(Keys(Deep), u"HKEY_LOCAL_MACHINE\\SOFTWARE\\App ");
}

TEST_P(DeepScan, GoesAsDeepAsTheRegistryDoesAndMovesTheBar) {
  // A live registry allows 512 levels, and the test's own key takes some of them.
  constexpr int Levels = 490;
  std::u16string Path = u"[HKEY_LOCAL_MACHINE\\SOFTWARE";
  for (int Level = 0; Level < Levels; ++Level)
    Path += u"\\k";
  std::u16string Text = Path + u"]\n\"bottom\"=\"C:\\\\gone.exe\"\n";
  for (std::uint64_t Entry = 0; Entry < 1000; ++Entry)
    Text += u"\"" + ToDecimal(Entry) + u"\"=\"text\"\n";
  Load(Text);
  EXPECT_EQ(Names(Deep), u"bottom ");
  std::int32_t Last = 0;
  std::int32_t Steps = 0;
  for (const auto &[Position, Max] : Run_->Progress.States) {
    EXPECT_LE(Position, Max + 2) << "the engine's own last steps may be beyond its end";
    Steps += Position > Last ? 1 : 0;
    Last = Position;
  }
  EXPECT_GE(Steps, (Levels + 1000 / 32) / 64);
}

TEST_P(DeepScan, StopsInTheMiddleOfAKeyAndSurvivesWhatItCannotRead) {
  std::u16string Text = uR"([HKEY_LOCAL_MACHINE\SOFTWARE\App\Denied]
"x"="C:\\gone.exe"
[HKEY_LOCAL_MACHINE\SOFTWARE\Many]
)";
  constexpr int Many = 100;
  for (std::uint64_t Entry = 0; Entry < Many; ++Entry)
    Text += u"\"" + ToDecimal(Entry) + u"\"=\"C:\\\\gone.exe\"\n";
  Load(Text);
  const bool Denied = Deny(u"HKEY_LOCAL_MACHINE\\SOFTWARE\\App\\Denied");
  RunScan(Deep);
  EXPECT_EQ(Run_->Problems->TotalCount(), Many + (Denied ? 0 : 1));
  EXPECT_EQ(Run_->Engine->UnreadableKeys().size(), Denied ? 1u : 0u);
  Run_->Messages->OnPump = [&] {
    if (Run_->Problems->TotalCount() > Many / 4)
      Run_->Engine->Stop();
  };
  Run_->Scan(TTestScan::Only(Deep));
  EXPECT_LT(Run_->Problems->TotalCount(), Many / 2);
}

TEST(DeepScanPaths, NoOtherLetterHasAnAsciiCapital) {
  // So folding ASCII letters finds all that upper-casing by the system's rules would.
  for (unsigned Unit = 0x80; Unit < 0x10000; ++Unit)
    EXPECT_GE(UpperCase(static_cast<char16_t>(Unit)), 0x80) << Unit;
}

TEST(PhraseMatcher, GoesOnWhereAPieceEnded) {
  const TPhraseMatcher Matcher({{u"\\office", 0, 0}, {u"shell folders", 1, 1}});
  TPhraseMatcher::TState Parent = TPhraseMatcher::AtStart;
  EXPECT_FALSE(Matcher.Continue(Parent, u"SOFTWARE\\OFF"));
  for (int Twice = 0; Twice < 2; ++Twice) {
    TPhraseMatcher::TState State = Parent;
    EXPECT_FALSE(Matcher.Continue(State, u"IC"));
    EXPECT_TRUE(Matcher.Continue(State, u"E\\x"));
    EXPECT_FALSE(Matcher.Continue(State, u"ICE")) << "that one has ended";
  }
}

} // namespace
} // namespace hivesweep
