#include <gtest/gtest.h>

#include <numeric>
#include <stdexcept>

#include "platform/DiskFile.h"
#include "repair/AppFrame.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {
namespace {

constexpr std::u16string_view AllAreas = u"11111111111111111";

// A scanner of ten entries, all problems; what its filter would protect is the third.
std::int32_t ScanTen(TScanRegistry &Engine, TStatusLabel &StatusLabel, TProgressBar &ProgressBar,
                     TGroupItems &Group) {
  ProgressBar.Advance();
  Engine.ShowStatus(StatusLabel, TProblemType::Font);
  std::int32_t Found = 0;
  for (char16_t Entry = u'0'; Entry <= u'9' && !Engine.Stopped; ++Entry) {
    Engine.Pump();
    ++Found;
    Engine.Report(Group, {.Label = TProblemType::Font,
                          .Area = Engine.CurrentArea(),
                          .KeyPath = u"HKEY_LOCAL_MACHINE\\Software\\Test",
                          .ValueName = Entry == u'2' ? u"Norton" : std::u16string(1, Entry),
                          .Data = u"C:\\gone.ttf",
                          .ItemKind = Engine.KindValue,
                          .BackupLines = {u"line " + std::u16string(1, Entry)}});
  }
  return Found;
}

std::int32_t ScanAndThrow(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                          TProgressBar &ProgressBar, TGroupItems &Group) {
  ScanTen(Engine, StatusLabel, ProgressBar, Group);
  throw std::runtime_error("broken hive");
}

constexpr TScannerRow Tens[] = {
    {2, ScanTen}, {3, ScanTen}, {4, ScanTen}, {4, ScanTen}, // two scanners of one area
};

std::vector<std::intptr_t> PostedCounts(const TTestScan &Scan) {
  std::vector<std::intptr_t> Counts;
  for (std::size_t Index = 0; Index < Scan.Messages->Posts.size(); ++Index) {
    const TPost &Post = Scan.Messages->Posts[Index];
    EXPECT_EQ(Post.Window, TTestScan::Window);
    EXPECT_EQ(Post.Message, 0x050Cu);
    EXPECT_EQ(Post.WParam, Index % AreaCount + 1);
    Counts.push_back(Post.LParam);
  }
  return Counts;
}

TEST(ScanDriver, RunsTheSwitchedAreasAndPostsOneMessageForEach) {
  static const struct {
    const char *Why;
    std::u16string_view Flags;
    std::vector<std::intptr_t> Posts; // the rest finds nothing
  } Cases[] = {
      {"all", AllAreas, {0, 9, 9, 18}},
      {"only area 1, which finds nothing", u"10000000000000000", {}},
      {"a text that ends early switches the rest off", u"01", {0, 9}},
      {"nothing but 1 is on", u"0y110000000000000", {0, 0, 9, 18}},
  };
  for (const auto &C : Cases) {
    TTestScan Scan(MemoryRegistry(u""), {}, Tens);
    std::vector<std::intptr_t> Posts = C.Posts;
    Posts.resize(AreaCount);
    EXPECT_EQ(Scan.Scan(C.Flags), std::accumulate(Posts.begin(), Posts.end(), std::intptr_t{0}))
        << C.Why;
    EXPECT_EQ(PostedCounts(Scan), Posts) << C.Why;
  }
}

TEST(ScanDriver, TakesTheFlagsFromTheSettingsFileWhenItIsGivenNone) {
  const TScratchFolder Folder;
  const TDataPaths Paths = DataPathsIn(Folder.Path());
  // Anything but "1" is off; names match without regard to case; what the file does
  // not mention is on, the deep scan too.
  ASSERT_EQ(WriteWholeFile(Paths.MainIniPath,
                           "[registryopt]\r\napp = 0\r\nFiletypes=true\r\n"
                           "Fonts= 1 \r\nHelp=\r\nLastFix=07/15/2009 14:30:05\r\n"),
            TError());
  TTestScan Scan(MemoryRegistry(u""), {}, Tens, {Paths.MainIniPath, Paths.IgnoreIniPath});
  EXPECT_EQ(Scan.Scan(u""), 18);
  const auto &Areas = Scan.Engine->AreaResults();
  EXPECT_FALSE(Areas[1].Scanned);
  EXPECT_FALSE(Areas[2].Scanned);
  EXPECT_TRUE(Areas[3].Scanned);
  EXPECT_FALSE(Areas[4].Scanned);
  EXPECT_TRUE(Areas[16].Scanned);
  EXPECT_EQ(Scan.Engine->LastFixFlag, u"07/15/2009 14:30:05");

  TTestScan Without(MemoryRegistry(u""), {}, Tens);
  EXPECT_EQ(Without.Scan(u""), 36);
  EXPECT_TRUE(Without.Engine->AreaResults()[16].Scanned);
}

TEST(ScanDriver, CountsWhatTheFilterHoldsBackAndSaysWhy) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  EXPECT_EQ(Scan.Scan(AllAreas), 36);
  const TAreaResult &Area = Scan.Engine->AreaResults()[3];
  EXPECT_EQ(Area.Found, 20);
  EXPECT_EQ(Area.Listed, 18);
  EXPECT_EQ(Area.Protected, 2);
  ASSERT_EQ(Scan.Engine->ProtectedItems().size(), 4u);
  const TProtectedItem &Item = Scan.Engine->ProtectedItems()[0];
  EXPECT_EQ(Item.Area, 2);
  EXPECT_EQ(Item.ValueName, u"Norton");
  EXPECT_EQ(Item.Protection.RuleText(), u"AnyFieldWords: norton");
  // A protected entry leaves no backup line either.
  EXPECT_EQ(Scan.Engine->BackupText.size(), 36u);
  EXPECT_EQ(Scan.Status.Texts[0], u"Scanning...Invalid Font");
}

// What a fix would take for something else than what was found.
std::int32_t ScanUnfixable(TScanRegistry &Engine, TStatusLabel &, TProgressBar &,
                           TGroupItems &Group) {
  static const struct {
    TFixAction Action;
    std::u16string_view KeyPath, ValueName;
  } Cases[] = {
      {TFixAction::RemoveValue, u"HKEY_CURRENT_USER\\A", u"N/A"}, // the whole key
      {TFixAction::RemoveValue, u"HKEY_CURRENT_USER\\A", u"\t N/A "},
      {TFixAction::RemoveValue, u"HKEY_CURRENT_USER", u"w"}, // w of the key that is open
      {TFixAction::RemoveValue, u"HKEY_CURRENT_USER\\", u"w"},
      {TFixAction::RemoveKey, u"HKEY_CURRENT_USER\\", u"N/A"},
      {TFixAction::RemoveKey, u"HKEY_OTHER\\A", u"N/A"}, // A of the root before
      {TFixAction::RemoveValue, u"HKEY_CURRENT_USER\\A", u"n/a"},
      {TFixAction::RemoveKey, u"HKEY_CURRENT_USER\\A", u"N/A"},
  };
  for (const auto &C : Cases)
    Engine.Report(Group, {.Action = C.Action,
                          .Area = Engine.CurrentArea(),
                          .KeyPath = std::u16string(C.KeyPath),
                          .ValueName = std::u16string(C.ValueName),
                          .Data = {},
                          .BackupLines = {}});
  return static_cast<std::int32_t>(std::size(Cases));
}

TEST(ScanDriver, ListsNothingThatAFixWouldTakeForSomethingElse) {
  static constexpr TScannerRow Rows[] = {{12, ScanUnfixable}};
  TTestScan Scan(MemoryRegistry(u""), {}, Rows);
  EXPECT_EQ(Scan.Scan(AllAreas), 2);
  const TAreaResult &Area = Scan.Engine->AreaResults()[11];
  EXPECT_EQ(Area.Found, Area.Listed + Area.Protected);
  EXPECT_EQ(Scan.Engine->ProtectedItems()[0].Protection.RuleText(),
            u"Unfixable: its name is the mark of a whole key");
  EXPECT_EQ(Scan.Engine->ProtectedItems()[5].Protection.RuleText(),
            u"Unfixable: its key is no key below a root");
  EXPECT_EQ(Scan.Problems->GetGroup(11)->Get(1)->Action, TFixAction::RemoveKey);
}

std::int32_t OpenLocked(TScanRegistry &Engine, TStatusLabel &, TProgressBar &, TGroupItems &) {
  for (const std::u16string_view Path : {u"Locked", u"\\locked\\", u"LOCKED", u"none"})
    Engine.OpenKey(TRegRoot::CurrentUser, Path);
  EXPECT_TRUE(Engine.IsUnreadable(u"HKEY_CURRENT_USER\\locked"));
  EXPECT_FALSE(Engine.IsUnreadable(u"HKEY_CURRENT_USER\\none"));
  return 0;
}

TEST(ScanDriver, TellsAKeyThatCannotBeReadOnce) {
  static constexpr TScannerRow Rows[] = {{2, OpenLocked}, {17, OpenLocked}};
  auto Registry = MemoryRegistry(u"[HKEY_CURRENT_USER\\Locked]\n");
  ASSERT_TRUE(Registry->Deny(u"HKEY_CURRENT_USER\\Locked"));
  TTestScan Scan(std::move(Registry), {}, Rows);
  for (int Round = 0; Round < 2; ++Round) {
    Scan.Scan(AllAreas);
    ASSERT_EQ(Scan.Engine->UnreadableKeys().size(), 1u);
    EXPECT_EQ(Scan.Engine->UnreadableKeys()[0].KeyPath, u"HKEY_CURRENT_USER\\Locked");
  }
}

TEST(ScanDriver, StopsAtTheNextEntryAndKeepsWhatWasFound) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  Scan.Engine->Stop(); // before a scan: without effect
  Scan.Messages->OnPump = [&] {
    if (Scan.Messages->Pumps == 15)
      Scan.Engine->Stop();
  };
  EXPECT_EQ(Scan.Scan(AllAreas), 13);
  // The areas behind it run and find nothing.
  const std::vector<std::intptr_t> Counts = PostedCounts(Scan);
  ASSERT_EQ(Counts.size(), AreaCount);
  EXPECT_EQ(Counts[1], 9);
  EXPECT_EQ(Counts[2], 4);
  EXPECT_EQ(Counts[3], 0);
  EXPECT_EQ(Scan.Messages->Pumps, 15);
  EXPECT_TRUE(Scan.Engine->Ready);
}

TEST(ScanDriver, RefusesASecondScanWhileOneRuns) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  int Refused = 0;
  Scan.Messages->OnPump = [&] {
    TTestLabel Label;
    TTestProgress Progress;
    const std::int32_t Before = Scan.Problems->TotalCount();
    EXPECT_EQ(Scan.Engine->StartScan(1, AllAreas, Label, u"other", Progress), 0);
    EXPECT_EQ(Scan.Engine->RunScan(1, AllAreas, Progress, Label), 0);
    EXPECT_EQ(Scan.Problems->TotalCount(), Before);
    EXPECT_TRUE(Progress.States.empty());
    ++Refused;
  };
  EXPECT_EQ(Scan.Scan(AllAreas), 36);
  EXPECT_EQ(Refused, 40);
  EXPECT_EQ(PostedCounts(Scan).size(), AreaCount);
}

TEST(ScanDriver, GoesOnBehindABrokenArea) {
  static constexpr TScannerRow Rows[] = {
      {2, ScanAndThrow},
      {4, ScanTen},
      {17, ScanTen},
      {17, ScanAndThrow},
  };
  TTestScan Scan(MemoryRegistry(u""), {}, Rows);
  EXPECT_EQ(Scan.Scan(AllAreas), 9);
  const std::vector<std::intptr_t> Counts = PostedCounts(Scan);
  EXPECT_EQ(Counts[1], 0);
  EXPECT_EQ(Counts[3], 9);
  EXPECT_EQ(Counts[16], 10) << "the deep scan reports what its finished passes found";
  // What the broken areas had listed stays in the list.
  EXPECT_EQ(Scan.Problems->FindGroup(u"3")->Count(), 9);
  EXPECT_EQ(Scan.Problems->FindGroup(u"18")->Count(), 18);
  EXPECT_EQ(Scan.Engine->AreaResults()[1].Failure, u"broken hive");
  EXPECT_EQ(Scan.Engine->AreaResults()[3].Failure, u"");
  for (const int Area : {2, 17}) {
    const TAreaResult &Broken = Scan.Engine->AreaResults()[AreaIndex(Area)];
    EXPECT_EQ(Broken.Found, Area == 2 ? 10 : 20);
    EXPECT_EQ(Broken.Found, Broken.Listed + Broken.Protected);
  }
  EXPECT_TRUE(Scan.Engine->Ready);
}

TEST(ScanDriver, AHandlersExceptionIsNoFailureOfAnArea) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  Scan.Messages->OnPump = [&] {
    if (Scan.Messages->Pumps == 15)
      throw std::runtime_error("a handler of the window");
  };
  EXPECT_THROW(Scan.Scan(AllAreas), std::runtime_error);
  for (const TAreaResult &Area : Scan.Engine->AreaResults())
    EXPECT_EQ(Area.Failure, u"");
  // It came to its end as a scan that was stopped does, and the next one is a new one.
  EXPECT_EQ(Scan.Messages->Pumps, 15);
  EXPECT_EQ(PostedCounts(Scan).size(), AreaCount);
  EXPECT_TRUE(Scan.Engine->Ready);
  EXPECT_EQ(Scan.Scan(AllAreas), 36);
}

TEST(ScanDriver, StartsEachScanAfresh) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  for (int Round = 0; Round < 3; ++Round) {
    EXPECT_EQ(Scan.Scan(TTestScan::Only(2)), 9);
    EXPECT_EQ(Scan.Problems->TotalCount(), 9);
    EXPECT_EQ(Scan.Problems->GroupCount(), 1);
    EXPECT_EQ(Scan.Engine->BackupText.size(), 9u);
    EXPECT_EQ(Scan.Engine->ProtectedItems().size(), 1u);
    EXPECT_EQ(Scan.Engine->AreaResults()[1].Found, 10);
  }
}

TEST(ScanDriver, SizesTheBarByTheLargeKeysAndRunsItOut) {
  TTestScan Scan(
      MemoryRegistry(u"[HKEY_CLASSES_ROOT\\CLSID\\{1}]\n[HKEY_CLASSES_ROOT\\CLSID\\{2}]\n"
                     u"[HKEY_CLASSES_ROOT\\TypeLib\\{3}]\n[HKEY_CLASSES_ROOT\\appid]\n"
                     u"[HKEY_CLASSES_ROOT\\.x]\n[HKEY_CLASSES_ROOT\\xfile]\n"
                     u"[HKEY_LOCAL_MACHINE\\SOFTWARE\\Microsoft\\Windows\\CurrentVersion"
                     u"\\SharedDLLs]\n\"a\"=dword:1\n\"b\"=dword:1\n\"c\"=dword:1\n"));
  EXPECT_EQ(Scan.Engine->CountComKeys(), 3);
  EXPECT_EQ(Scan.Engine->CountSharedDlls(), 3);
  EXPECT_EQ(Scan.Engine->CountFileTypes(), 2);
  EXPECT_EQ(Scan.Engine->ExtensionNames, std::vector<std::u16string>{u".x"});
  EXPECT_EQ(Scan.Engine->FileTypeNames, std::vector<std::u16string>{u"xfile"});
  Scan.Scan(AllAreas);
  // 3 COM keys, 3 counters, 2 types of files, the 5 names below the machine's classes
  // and 22 steps are 35 of work, and 2 more to run out.
  const auto &States = Scan.Progress.States;
  EXPECT_EQ(States.front().first, 0);
  EXPECT_NE(std::find(States.begin(), States.end(), std::pair(0, 37)), States.end());
  EXPECT_EQ(States.back(), std::pair(3, 100)) << "one step, then one for each of the two";
  EXPECT_TRUE(Scan.Engine->FileTypeNames.empty()) << "only while a scan runs";
}

TEST(ScanDriver, MakesTheOldBackupFoldersAndWritesTheResult) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  ASSERT_TRUE(CreateFolderPath(*Scan.Platform.Files, Scan.Platform.Folders->Program()));
  TTestLabel Result;
  Scan.Engine->ScanAndReport(1, TTestScan::Only(3), u"", Scan.Progress, Scan.Status, Result);
  EXPECT_EQ(Result.Texts, std::vector<std::u16string>{u"9  problem[s] found"});
  EXPECT_EQ(Scan.Platform.Files->Look(Scan.Platform.Folders->Program() + u"Backup\\Registry"),
            TPathState::Folder);
  EXPECT_EQ(Scan.Problems->FindGroup(u"4")->Get(0)->ItemKind, 2);
  EXPECT_EQ(Scan.Problems->FindGroup(u"4")->Get(0)->ImageIndex, u"3");
}

TEST(ScanDriver, SettingsThatAreHeldForAMomentAreToldAndNothingIsSelected) {
  const TScratchFolder Folder;
  const TDataPaths Paths = DataPathsIn(Folder.Path());
  for (const std::u16string &Path : {Paths.MainIniPath, Paths.IgnoreIniPath})
    ASSERT_EQ(WriteWholeFile(Path, "[Registry]\r\nHKEY_LOCAL_MACHINE\\Software\\Test=1\r\n"),
              TError());
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  TTestProfiles &Profiles = TTestProfiles::In(Scan.Platform);
  Scan.Engine = std::make_unique<TScanRegistry>(
      Scan.Platform, *Scan.Problems, TSettingsPaths{Paths.MainIniPath, Paths.IgnoreIniPath}, Tens,
      std::vector<std::u16string>(EnglishLabels.begin(), EnglishLabels.end()));
  const auto Selected = [&] {
    Scan.Problems->BuildView(u"");
    return Scan.Engine->GradeProblems({}, Scan.Progress);
  };
  for (const std::u16string &Path : {Paths.IgnoreIniPath, Paths.MainIniPath}) {
    Profiles.Held = Path;
    const bool IsPair = Path == Paths.MainIniPath;
    EXPECT_EQ(Scan.Scan(TTestScan::Only(2)), IsPair ? 0 : 8);
    ASSERT_EQ(Scan.Engine->UnreadSettings().size(), 1u);
    EXPECT_EQ(Selected(), 0);
    EXPECT_EQ(Scan.Problems->CheckedCount(), 0);
    // The next scan knows them again.
    Profiles.Held.clear();
    EXPECT_EQ(Scan.Scan(TTestScan::Only(2)), 0);
    EXPECT_TRUE(Scan.Engine->UnreadSettings().empty());
  }
}

TEST(ScanDriver, GradesWithMovingBarAndHearsAStopMeanwhile) {
  TTestScan Scan(MemoryRegistry(u""), {}, Tens);
  EXPECT_EQ(Scan.Scan(AllAreas), 36);
  Scan.Problems->BuildView(u"");
  int Graded = 0;
  Scan.Messages->OnPump = [&] {
    if (++Graded == 30)
      Scan.Engine->Stop();
  };
  EXPECT_EQ(Scan.Engine->GradeProblems({}, Scan.Progress), 20) << "nine of the 29 are high";
  EXPECT_EQ(Scan.Problems->CheckedCount(), 20) << "the rest is not selected";
  EXPECT_EQ(Scan.Problems->ViewItems().back()->RiskText, u"Low-Risk") << "but graded";
  EXPECT_EQ(Scan.Progress.Position(), 30);
  EXPECT_EQ(Scan.Progress.Max(), 36);
  // A handler that frees the problems.
  Scan.Messages->OnPump = [&] { Scan.Problems->Clear(); };
  EXPECT_EQ(Scan.Engine->GradeProblems({}, Scan.Progress), 0);
}

TEST(ScanDriver, HearsOfAKeyThatIsIgnoredWhileItScans) {
  const TScratchFolder Folder;
  const TDataPaths Paths = DataPathsIn(Folder.Path());
  TTestScan Scan(MemoryRegistry(u""), {}, Tens, {Paths.MainIniPath, Paths.IgnoreIniPath});
  Scan.Messages->OnPump = [&] {
    if (Scan.Messages->Pumps == 15) {
      EXPECT_EQ(WriteWholeFile(Paths.IgnoreIniPath,
                               "[Registry]\r\nHKEY_LOCAL_MACHINE\\Software\\Test=x\r\n"),
                TError());
    }
  };
  EXPECT_EQ(Scan.Scan(AllAreas), 12);
  EXPECT_EQ(Scan.Engine->ProtectedItems().back().Protection.RuleText(),
            u"Ignore.ini: HKEY_LOCAL_MACHINE\\Software\\Test");
}

} // namespace
} // namespace hivesweep
