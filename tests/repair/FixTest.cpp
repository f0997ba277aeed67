// The fix itself: what it removes and in which order, what it tells, and when it does
// not begin.
#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

// A clock that stands still, until it is set, and counts the pauses.
class TTestClock final : public TClock {
public:
  TLocalTime Now() override { return Time; }
  std::u16string DateSeparator() override { return u"."; }
  void Pause(std::uint32_t Milliseconds) override {
    Pauses.push_back(Milliseconds);
    OnPause();
  }

  TLocalTime Time = {2009, 7, 15, 14, 30, 5};
  std::vector<std::uint32_t> Pauses;
  std::function<void()> OnPause = [] {}; // what happens meanwhile
};

// A registry in memory, a data folder and a clock.
class FixTest : public testing::Test {
protected:
  explicit FixTest(std::u16string_view Registry =
                       u"[HKEY_CURRENT_USER\\A]\n\"v\"=\"1\"\n\"w\"=\"2\"\n\"N/A\"=\"n\"\n"
                       u"[HKEY_CURRENT_USER\\A\\Sub]\n[HKEY_CURRENT_USER\\B]\n\"v\"=\"b\"\n"
                       u"[HKEY_LOCAL_MACHINE\\L]\n\"v\"=\"l\"\n")
      : Platform_(MakeMemoryPlatform(MemoryRegistry(Registry), {})) {
    auto Clock = std::make_unique<TTestClock>();
    Clock_ = Clock.get();
    Platform_.Clock = std::move(Clock);
    Fix_ = std::make_unique<TTestFix>(Platform_, Data());
  }

  std::u16string Data() const { return Folder_.File(u"data"); }
  std::u16string Backup(std::u16string_view Name) const {
    return Fix_->Clean.Paths.BackupFolderPath + std::u16string(Name);
  }
  static std::string Content(const std::u16string &Path) {
    std::string Bytes;
    EXPECT_EQ(ReadWholeFile(Path, Bytes), TError());
    return Bytes;
  }
  bool Has(std::u16string_view Key, std::u16string_view Value) {
    const TRegOpened Opened = Platform_.Registry->Open(TRegRoot::CurrentUser, Key);
    TRegValue Unused;
    return Opened.Key && Opened.Key->Read(Value, Unused) == TRegStatus::Ok;
  }
  bool HasKey(std::u16string_view Key) {
    return Platform_.Registry->Open(TRegRoot::CurrentUser, Key).Status == TRegStatus::Ok;
  }
  using TState = std::pair<std::int32_t, std::int32_t>;
  std::vector<TState> LastStates(std::size_t Count) const {
    return {Fix_->Bar.States.end() - static_cast<std::ptrdiff_t>(Count), Fix_->Bar.States.end()};
  }
  static constexpr std::u16string_view Link = u"C:\\Users\\me\\a.lnk";
  void WriteLink() {
    CreateFolderPath(*Platform_.Files, u"C:\\Users\\me");
    TFileContent Content;
    Content.Bytes = "link";
    ASSERT_EQ(Platform_.Files->WriteContent(Link, Content), TFileStatus::Ok);
  }
  static std::vector<TRemoval> Reasons(const TFixReport &Report) {
    std::vector<TRemoval> Out;
    for (const TNotRemoved &Item : Report.NotRemoved)
      Out.push_back(Item.Why);
    return Out;
  }

  TScratchFolder Folder_;
  TPlatform Platform_;
  TTestClock *Clock_ = nullptr;
  std::unique_ptr<TTestFix> Fix_;
};

TEST_F(FixTest, RemovesWhatIsCheckedAndOnlyThat) {
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"w").Checked = false;
  Fix_->Add(u"HKEY_CURRENT_USER\\B", u" N/A\t");
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Report.Removed, 2);
  EXPECT_TRUE(Report.NotRemoved.empty());
  EXPECT_FALSE(Has(u"A", u"v"));
  EXPECT_TRUE(Has(u"A", u"w"));
  EXPECT_TRUE(Has(u"A", u"N/A")) << "a value can have that name too";
  EXPECT_FALSE(HasKey(u"B"));
  EXPECT_EQ(Fix_->Problems.TotalCount(), 1) << "what was not chosen stays in the list";
}

TEST_F(FixTest, GoesBackwardsAndPacesTheBar) {
  for (const std::u16string_view Name : {u"v", u"w", u"gone"})
    Fix_->Add(u"HKEY_CURRENT_USER\\A", Name);
  Fix_->Problems.GetGroup(0)->Get(1)->Checked = false;
  Fix_->Clean.FixPause = 10;
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Fix_->Clean.EnumerateBackups().at(0).Changes, 1) << "of the two that were chosen";
  ASSERT_EQ(Report.NotRemoved.size(), 1u);
  EXPECT_EQ(Report.NotRemoved[0].ValueName, u"gone");
  EXPECT_EQ(Report.NotRemoved[0].Why, TRemoval::GoneAlready);
  EXPECT_EQ(Clock_->Pauses, std::vector<std::uint32_t>(3, 10)) << "unchecked ones too";
  const std::vector<TState> Wanted = {{0, 3}, {0, 3}, {1, 3}, {3, 3}, {3, 100}, {100, 100}};
  EXPECT_EQ(LastStates(Wanted.size()), Wanted) << "0*3/2, 1*3/2, 2*3/2";
  EXPECT_EQ(Fix_->Label.Texts, (std::vector<std::u16string>{u"", u"Fixing..."}));
}

TEST_F(FixTest, ASingleProblemLeavesTheBarAloneUntilTheEnd) {
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  Fix_->Run();
  EXPECT_EQ(LastStates(3), (std::vector<TState>{{0, 1}, {0, 100}, {100, 100}}));
}

TEST_F(FixTest, AStepHitsTheKeyThatIsOpen) {
  // Removed from the last to the first: B\v, then v of a missing key, and so on.
  Fix_->Add(u"HKEY_LOCAL_MACHINE\\Missing", u"v");
  Fix_->Add(u"HKEY_CURRENT_USER\\Missing", u"w");
  Fix_->Add(u"no root", u"N/A");
  Fix_->Add(u"HKEY_NONE\\A", u"v");
  Fix_->Add(u"HKEY_CURRENT_USER\\B", u"nothing");
  const TFixReport Report = Fix_->Run();
  EXPECT_FALSE(Has(u"A", u"v")) << "an unknown root leaves the one before in force";
  EXPECT_FALSE(Has(u"A", u"w")) << "a key that can't be opened leaves the one before open";
  EXPECT_TRUE(Has(u"B", u"v"));
  const TRegOpened Machine = Platform_.Registry->Open(TRegRoot::LocalMachine, u"L");
  TRegValue Value;
  EXPECT_EQ(Machine.Key->Read(u"v", Value), TRegStatus::Ok)
      << "another root closes the key: nothing is hit there";
  EXPECT_EQ(Report.Removed, 1);
  using enum TRemoval;
  EXPECT_EQ(Reasons(Report), (std::vector{GoneAlready, GoneAlready, FromOtherKey, GoneAlready}))
      << "a value that went is not called gone already";
  EXPECT_EQ(Report.NotRemoved[2].OtherKey, u"HKEY_CURRENT_USER\\A");
  // And what was hit by the way comes back with the rest.
  ASSERT_TRUE(Fix_->Clean.RestoreBackup(Report.BackupName));
  Fix_->Clean.FinishRestore();
  EXPECT_TRUE(Has(u"A", u"v"));
  EXPECT_TRUE(Has(u"A", u"w"));
}

TEST_F(FixTest, AFileIsDeletedOnlyByTheFullPathThatIsAlsoItsKeyPath) {
  WriteLink();
  Fix_->Add(Link, u"N/A", Link, TProblemType::ShortcutFile);
  Fix_->Add(u"C:\\Users\\me\\b.lnk", u"N/A", u"C:\\Users\\me\\b.lnk", TProblemType::ShortcutFile);
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Platform_.Files->Look(Link), TPathState::Missing);
  EXPECT_EQ(Reasons(Report), std::vector{TRemoval::GoneAlready});
  EXPECT_TRUE(CheckFolder(Backup(Report.BackupName))) << "there was no text to keep";
  EXPECT_EQ(Fix_->Clean.EnumerateBackups().size(), 1u) << "and it can be restored all the same";

  // Other texts do not tell for certain what is to go.
  WriteLink();
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"N/A", Link, TProblemType::ShortcutFile);
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v", Link, TProblemType::ShortcutFile);
  Fix_->Add(u"a.lnk", u"N/A", u"a.lnk", TProblemType::ShortcutFile);
  Fix_->Add(u"C:a.lnk", u"N/A", u"C:a.lnk", TProblemType::ShortcutFile);
  EXPECT_EQ(Reasons(Fix_->Run()), std::vector(4, TRemoval::NotRecorded));
  EXPECT_EQ(Platform_.Files->Look(Link), TPathState::File);
  EXPECT_TRUE(Has(u"A", u"v"));
}

TEST_F(FixTest, ATranslationDoesNotDecideWhatIsDeleted) {
  // With all captions alike, a value whose data name a file was taken for that file.
  WriteLink();
  TTestFix Fix(Platform_, Data(), std::vector<std::u16string>(EnglishLabels.size()));
  const auto Add = [&](std::u16string_view Key, std::u16string_view Name, TProblemType Type,
                       TFixAction Action) {
    TItemInfo &Item = Fix.Add(Key, Name, Link, Type);
    Item.Type = Type;
    Item.Action = Action;
  };
  Add(u"HKEY_CURRENT_USER\\B", u"v", TProblemType::DeepScan, TFixAction::RemoveValue);
  Add(u"HKEY_CURRENT_USER\\A", u"v", TProblemType::HelpFiles, TFixAction::RemoveValue);
  Add(u"HKEY_CURRENT_USER\\A", u"N/A", TProblemType::MruCache, TFixAction::RemoveValue);
  Add(u"HKEY_CURRENT_USER\\A\\Sub", u"", TProblemType::EmptyKey, TFixAction::RemoveKey);
  Fix.Clean.FixPause = 1;
  Clock_->OnPause = [&] { Fix.Clean.FixDeepScan = false; };
  const TFixReport Report = Fix.Run();
  EXPECT_EQ(Report.Removed, 3);
  EXPECT_EQ(Platform_.Files->Look(Link), TPathState::File);
  EXPECT_FALSE(Has(u"A", u"v"));
  EXPECT_FALSE(Has(u"A", u"N/A"));
  EXPECT_TRUE(Has(u"A", u"w")) << "that was no whole key";
  EXPECT_FALSE(HasKey(u"A\\Sub"));
  EXPECT_TRUE(Has(u"B", u"v")) << "a problem of the deep scan";
  ASSERT_TRUE(Fix.Clean.RestoreBackup(Report.BackupName));
  Fix.Clean.FinishRestore();
  EXPECT_TRUE(Has(u"A", u"v") && Has(u"A", u"N/A") && HasKey(u"A\\Sub"));
}

TEST_F(FixTest, LastFixIsWrittenWithSlashesWhateverTheLocale) {
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  const std::u16string Ini = Fix_->Clean.Paths.MainIniPath;
  EXPECT_EQ(Platform_.Storage->CreateFolder(Data()), TError());
  ASSERT_EQ(WriteWholeFile(Ini, "[RegistryOpt]\r\n"), TError());
  SetReadOnly(Ini, true);
  EXPECT_TRUE(Fix_->Run().LastFixWritten) << "a read-only file is made writable";
  EXPECT_EQ(Platform_.Profiles->ReadString(Ini, u"RegistryOpt", u"LastFix", u""),
            u"07/15/2009 14:30:05");
  Fix_->Clean.RecordStatistics(12, false);
  Fix_->Clean.RecordStatistics(99, true);
  Fix_->Clean.RecordStatistics(30, false);
  TTestLabel Scan, Clean, Total;
  Fix_->Clean.LoadSummary(Scan, Clean, Total, u"None");
  EXPECT_EQ(Scan.Texts.back(), u"07.15.2009");
  EXPECT_EQ(Clean.Texts.back(), u"07.15.2009");
  EXPECT_EQ(Total.Texts.back(), u"42");
}

TEST_F(FixTest, TheBackupHoldsAllLinesOfTheScan) {
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v").Checked = false;
  Fix_->Engine.BackupText = {u"[HKEY_CURRENT_USER\\A]", u"\"v\"=\"\u20AC\u4E00\""};
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Report.BackupName, u"backup20090715143005.reg");
  EXPECT_EQ(Content(Backup(Report.BackupName)),
            "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n\"v\"=\"" +
                ToAnsi(u"\u20AC\u4E00") + "\"\r\n");
  EXPECT_TRUE(Has(u"A", u"v"));

  // A second fix in the same second has names of its own, also beside a text that has lost
  // its record. What a fix that was broken off had prepared is gone.
  EXPECT_EQ(Fix_->Clean.DeleteBackup(Report.BackupName), TError());
  for (const std::u16string_view Name : {Report.BackupName, std::u16string(u"backup1.tmp")})
    ASSERT_EQ(WriteWholeFile(Backup(Name), "old"), TError());
  Fix_->Engine.BackupText = {u"[HKEY_CURRENT_USER\\B]"};
  Fix_->Problems.CheckAll(false);
  const TFixReport Second = Fix_->Run();
  EXPECT_EQ(Second.BackupName, u"backup20090715143005-2.reg");
  EXPECT_EQ(Content(Backup(Report.BackupName)), "old");
  EXPECT_EQ(Content(Backup(Second.BackupName)),
            "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\B]\r\n");
  std::vector<TStoredFile> Files;
  EXPECT_EQ(Platform_.Storage->List(Backup(u""), Files), TError());
  EXPECT_EQ(Files.size(), 2u);
}

TEST_F(FixTest, AfterAClockThatWentBackTheNewestRecordsStay) {
  // Twelve fixes in the last hour of summer time and one in the hour that follows, which
  // has the same number.
  std::vector<std::u16string> Names;
  for (int Count = 1; Count <= 13; ++Count) {
    Platform_.Registry->Open(TRegRoot::CurrentUser, u"A", TRegAccess::Full)
        .Key->SetValue(u"v", TRegType::String, BytesOf(u"1"));
    Clock_->Time = {2009, 10, 25, 2, Count == 13 ? 1 : 30 + Count, 0};
    Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
    if (Count == 13)
      Fix_->Engine.BackupText = {u"[HKEY_CURRENT_USER\\A]"};
    Names.push_back(Fix_->Run().BackupName);
  }
  EXPECT_FALSE(Has(u"A", u"v"));
  std::vector<std::u16string> Left;
  for (const TBackupEntry &Entry : Fix_->Clean.EnumerateBackups())
    Left.push_back(Entry.Name);
  ASSERT_EQ(Left.size(), 10u) << "its own is one of the ten that stay";
  EXPECT_EQ(Left.front(), Names.back()) << "it has a text";
  EXPECT_TRUE(std::equal(Left.begin() + 1, Left.end(), Names.begin() + 3, Names.end() - 1));
  ASSERT_TRUE(Fix_->Clean.RestoreBackup(Names.back()));
  Fix_->Clean.FinishRestore();
  EXPECT_TRUE(Has(u"A", u"v"));
}

TEST_F(FixTest, WaitsForAnotherProgramAndThenSaysWhichItIs) {
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  const std::u16string Done = Fix_->Run().BackupName;
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"w");
  Fix_->Clean.FixPause = 0;
  Clock_->Pauses.clear();
  THolding Other = Platform_.Storage->Hold(Fix_->Clean.Paths.LockPath);
  ASSERT_TRUE(Other.File);
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Report.Failure.Code, TErrorCode::NothingFixed);
  ASSERT_EQ(Report.Failure.Cause.size(), 1u);
  const TError &Why = Report.Failure.Cause.front();
  EXPECT_EQ(Why.Code, TErrorCode::DataInUseBy);
  EXPECT_TRUE(Why.Subject.starts_with(u"core_test")) << ToUtf8(Why.Subject);
  EXPECT_NE(Why.Number, 0u);
  EXPECT_FALSE(Fix_->Clean.RestoreBackup(Done));
  EXPECT_EQ(Fix_->Clean.RestoreReport().Failure.Cause, std::vector{Why});
  EXPECT_EQ(Fix_->Clean.DeleteBackup(Done), Why);
  EXPECT_TRUE(Has(u"A", u"w"));
  EXPECT_FALSE(Has(u"A", u"v"));
  EXPECT_GT(Clock_->Pauses.size(), 20u) << "it gave the other one time";

  Clock_->OnPause = [&] { Other.File.reset(); };
  EXPECT_EQ(Fix_->Run().Removed, 1) << "the other one has come to its end";
  EXPECT_TRUE(Fix_->Clean.RestoreBackup(Done)) << "and nothing is left of its own";
}

TEST_F(FixTest, WithoutARecordOrItsIgnoreListNothingIsTouched) {
  // What stands in the way, and what the message must name.
  static const struct {
    const char *Why;
    std::u16string_view Blocked;
    bool ByFolder = false;
  } Cases[] = {{"no backup folder can be made", u"backup"},
               {"no undo folder", u"undo"},
               {"the ignore list can't be read", u"Ignore.ini", true}};
  for (const auto &C : Cases) {
    const TScratchFolder Folder;
    ASSERT_EQ(C.ByFolder ? Platform_.Storage->CreateFolder(Folder.File(C.Blocked))
                         : WriteWholeFile(Folder.File(C.Blocked), "in the way"),
              TError());
    TTestFix Fix(Platform_, Folder.Path());
    Fix.Add(u"HKEY_CURRENT_USER\\A", u"v");
    Fix.Engine.BackupText = {u"[HKEY_CURRENT_USER\\A]"};
    const TFixReport Report = Fix.Run();
    const std::u16string Words = EnglishWords(Report.Failure);
    EXPECT_NE(Words.find(Folder.File(C.Blocked)), std::u16string::npos)
        << C.Why << ": " << ToUtf8(Words);
    EXPECT_EQ(Report.Failure.Code,
              C.ByFolder ? TErrorCode::IgnoreListUnknown : TErrorCode::NoBackupWritten);
    EXPECT_TRUE(Has(u"A", u"v")) << C.Why;
    EXPECT_EQ(Fix.Problems.TotalCount(), 1) << C.Why;
    EXPECT_TRUE(CheckFolder(Fix.Clean.Paths.MainIniPath)) << C.Why;
  }
}

TEST_F(FixTest, WhatIsNotInTheRecordStays) {
  // The registry changes between the record and the removal.
  Fix_->Add(u"HKEY_CURRENT_USER\\B", u"N/A");
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  Fix_->Clean.FixPause = 1;
  Clock_->OnPause = [this] {
    for (const auto &[Key, Name] : {std::pair(u"A", u"v"), std::pair(u"B", u"another")})
      Platform_.Registry->Open(TRegRoot::CurrentUser, Key, TRegAccess::Full)
          .Key->SetValue(Name, TRegType::String, BytesOf(u"newer"));
  };
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Reasons(Report), (std::vector{TRemoval::NotRecorded, TRemoval::NotRecorded}));
  EXPECT_TRUE(Has(u"A", u"v"));
  EXPECT_TRUE(Has(u"B", u"another"));
}

TEST_F(FixTest, WhatIsIgnoredByNowStays) {
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  Fix_->Add(u"HKEY_CURRENT_USER\\B", u"N/A");
  Fix_->Clean.FixPause = 1;
  Clock_->OnPause = [this] {
    EXPECT_FALSE(Fix_->Clean.IgnoreList.Add(u"HKEY_CURRENT_USER\\A", u"v"));
  };
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Reasons(Report), std::vector{TRemoval::Ignored});
  EXPECT_EQ(Report.Removed, 1);
  EXPECT_TRUE(Has(u"A", u"v"));
}

TEST_F(FixTest, WithoutTheIgnoreListTheRestStays) {
  // Another program holds it from the second problem on.
  TTestProfiles &Profiles = TTestProfiles::In(Platform_);
  TTestFix Fix(Platform_, Data());
  Fix.Add(u"HKEY_CURRENT_USER\\A", u"v");
  Fix.Add(u"HKEY_CURRENT_USER\\A", u"w");
  Fix.Clean.FixPause = 1;
  Clock_->OnPause = [&] {
    if (!Has(u"A", u"w"))
      Profiles.Held = Fix.Clean.Paths.IgnoreIniPath;
  };
  EXPECT_EQ(Reasons(Fix.Run()), std::vector{TRemoval::ListUnread});
  EXPECT_TRUE(Has(u"A", u"v"));
}

TEST_F(FixTest, MovesItsBarAndCanBeLeftWhileManyAreRecorded) {
  constexpr int Many = 1'000;
  std::u16string Text;
  for (std::uint64_t Name = 0; Name < Many; ++Name)
    Text += u"[HKEY_CURRENT_USER\\M]\n\"" + ToDecimal(Name) + u"\"=\"1\"\n[HKEY_CURRENT_USER\\N\\" +
            ToDecimal(Name) + u"]\n";
  Platform_.Registry = MemoryRegistry(Text);
  auto Owned = std::make_unique<TTestMessages>();
  TTestMessages &Messages = *Owned;
  Platform_.Messages = std::move(Owned);
  for (const int Stop : {1, 2 * Many, 5 * Many, 6 * Many}) {
    TTestFix Fix(Platform_, Data());
    for (std::uint64_t Name = 0; Name < Many; ++Name) {
      Fix.Add(u"HKEY_CURRENT_USER\\M", ToDecimal(Name));
      Fix.Add(u"HKEY_CURRENT_USER\\N\\" + ToDecimal(Name), u"N/A");
    }
    Messages.Pumps = 0;
    Messages.OnPump = [&] {
      if (Messages.Pumps == Stop)
        Fix.Clean.StopFix();
    };
    EXPECT_EQ(Fix.Run().BackupName, u"") << Stop;
    EXPECT_EQ(Messages.Pumps, Stop) << "it was left at once";
    EXPECT_EQ(Fix.Problems.TotalCount(), 2 * Many);
    EXPECT_TRUE(Fix.Clean.EnumerateBackups().empty());
    EXPECT_TRUE(CheckFolder(Fix.Clean.Paths.UndoFolderPath)) << "nothing was recorded";
    EXPECT_GE(Fix.Bar.Position() + 1, std::min(Stop, Fix.Bar.Max())) << "once per look";
  }
}

TEST_F(FixTest, AKeyThatIsGoneIsNotCalledLeftAlone) {
  // After the record: the value of its name in the open key is somebody else's.
  Fix_->Add(u"HKEY_CURRENT_USER\\B", u"v");
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"w");
  Fix_->Clean.FixPause = 1;
  Clock_->OnPause = [this] {
    Platform_.Registry->Open(TRegRoot::CurrentUser, u"", TRegAccess::Full).Key->DeleteTree(u"B");
  };
  EXPECT_EQ(Reasons(Fix_->Run()), std::vector{TRemoval::GoneAlready});
  EXPECT_TRUE(Has(u"A", u"v"));
}

TEST_F(FixTest, WhatCanNotBeReadIsLeftAlone) {
  auto Registry = MemoryRegistry(u"[HKEY_CURRENT_USER\\T\\Open]\n\"v\"=\"1\"\n"
                                 u"[HKEY_CURRENT_USER\\T\\Closed]\n\"v\"=\"1\"\n");
  ASSERT_TRUE(Registry->Deny(u"HKEY_CURRENT_USER\\T\\Closed"));
  Platform_.Registry = std::move(Registry);
  TTestFix Fix(Platform_, Data());
  Fix.Add(u"HKEY_CURRENT_USER\\T", u"N/A");
  Fix.Add(u"HKEY_CURRENT_USER\\T\\Closed", u"v");
  EXPECT_EQ(Reasons(Fix.Run()), (std::vector{TRemoval::Denied, TRemoval::NotRecorded}));
  EXPECT_TRUE(Has(u"T\\Open", u"v")) << "half a key would be gone otherwise";
}

TEST_F(FixTest, WhatCanNotBeMadeAgainIsLeftAlone) {
  const auto Class = [](std::u16string_view Name) {
    TRegKeyInfo Info;
    Info.ClassName = Name;
    return Info;
  };
  const auto Lasting = [](TRegVolatile Volatile) {
    TRegKeyInfo Info;
    Info.Volatile = Volatile;
    return Info;
  };
  TRegKeyInfo Labelled;
  Labelled.Label.resize(20);
  const struct {
    const char *Why;
    std::u16string Name; // of the key to be deleted
    TRegKeyInfo Info;    // what it is
    bool IsDeleted;
    bool RefusesLabels = false;
  } Cases[] = {
      {"an odd class", u"K", Class(u"c \u0416"), true},
      {"a class with a zero inside", u"K", Class({u"a\0b", 3}), false},
      {"a name of 255 units", std::u16string(255, u'n'), {}, true},
      {"a name of 256 units", std::u16string(256, u'n'), {}, false},
      {"a volatile key", u"K", Lasting(TRegVolatile::Yes), true},
      {"nobody knows whether it is volatile", u"K", Lasting(TRegVolatile::NotTold), false},
      {"a label", u"K", Labelled, true},
      {"a label that can't be given", u"K", Labelled, false, true},
  };
  for (const auto &C : Cases) {
    auto Registry = MemoryRegistry(u"[HKEY_CURRENT_USER\\" + C.Name + u"]\n\"v\"=\"1\"\n");
    ASSERT_TRUE(Registry->SetInfo(u"HKEY_CURRENT_USER\\" + C.Name, C.Info));
    if (C.RefusesLabels)
      Registry->RefuseLabels();
    Platform_.Registry = std::move(Registry);
    TTestFix Fix(Platform_, Data());
    Fix.Add(u"HKEY_CURRENT_USER\\" + C.Name, u"N/A");
    const TFixReport Report = Fix.Run();
    EXPECT_EQ(Reasons(Report),
              C.IsDeleted ? std::vector<TRemoval>() : std::vector{TRemoval::NotRemakable})
        << C.Why;
    EXPECT_EQ(HasKey(C.Name), !C.IsDeleted) << C.Why;
    if (!C.IsDeleted)
      continue;
    ASSERT_TRUE(Fix.Clean.RestoreBackup(Report.BackupName)) << C.Why;
    Fix.Clean.FinishRestore();
    TRegKeyInfo Now;
    const TRegOpened Again = Platform_.Registry->Open(TRegRoot::CurrentUser, C.Name);
    ASSERT_TRUE(Again.Key) << C.Why;
    EXPECT_EQ(Again.Key->ReadInfo(Now), TRegStatus::Ok);
    EXPECT_EQ(Now, C.Info) << C.Why;
  }
}

TEST_F(FixTest, AKeyOfTheClassesRootTakesTheUsersFirst) {
  Platform_.Registry =
      MemoryRegistry(u"[HKEY_CURRENT_USER\\Software\\Classes\\x]\n\"v\"=\"user\"\n"
                     u"[HKEY_LOCAL_MACHINE\\Software\\Classes\\x\\Sub]\n\"v\"=\"machine\"\n");
  TTestFix Fix(Platform_, Data());
  Fix.Add(u"HKEY_CLASSES_ROOT\\x", u"N/A");
  const TFixReport Report = Fix.Run();
  EXPECT_EQ(Report.Removed, 1);
  EXPECT_FALSE(HasKey(u"Software\\Classes\\x"));
  EXPECT_EQ(Platform_.Registry->Open(TRegRoot::LocalMachine, u"Software\\Classes\\x\\Sub").Status,
            TRegStatus::Ok);
  ASSERT_TRUE(Fix.Clean.RestoreBackup(Report.BackupName));
  Fix.Clean.FinishRestore();
  EXPECT_TRUE(Has(u"Software\\Classes\\x", u"v")) << "and comes back where it was";
}

TEST_F(FixTest, ItsRecordIsEnoughForTheUndoAndBelongsToOneProgram) {
  auto Editor = std::make_unique<TTestEditor>([](std::u16string_view) {});
  TTestEditor &Started = *Editor;
  Platform_.Shell = std::move(Editor);
  Fix_->Add(u"HKEY_CURRENT_USER\\A", u"v");
  Fix_->Engine.BackupText = {u"[HKEY_CURRENT_USER\\A]", u"\"v\"=\"1\""};
  const std::u16string Name = Fix_->Run().BackupName;
  std::string Bytes = Content(Backup(Name));
  std::fill(Bytes.begin() + 50, Bytes.end(), '\0'); // a zeroed sector
  ASSERT_EQ(WriteWholeFile(Backup(Name), Bytes), TError());

  const std::u16string File = Fix_->Clean.Paths.UndoFolderPath + Name.substr(0, Name.find(u'.'));
  const std::string Good = Content(File + u".undo");
  TError Why;
  TUndoRecord Record = *DecodeUndoRecord(Good, Why);
  Record.ViewBits = 96 - ThisView();
  ASSERT_EQ(WriteWholeFile(File + u".undo", EncodeUndoRecord(Record)), TError());
  EXPECT_FALSE(Fix_->Clean.RestoreBackup(Name));
  ASSERT_EQ(Fix_->Clean.RestoreReport().Failure.Cause.size(), 1u);
  EXPECT_EQ(Fix_->Clean.RestoreReport().Failure.Cause[0].Code, TErrorCode::RecordOfOtherView);

  ASSERT_EQ(WriteWholeFile(File + u".undo", Good), TError());
  ASSERT_TRUE(Fix_->Clean.RestoreBackup(Name));
  Fix_->Clean.FinishRestore();
  EXPECT_TRUE(Has(u"A", u"v"));
  EXPECT_TRUE(Fix_->Clean.RestoreReport().Notes.empty());
  EXPECT_EQ(Fix_->Clean.RestoreReport().Remarks.size(), 1u);
  EXPECT_TRUE(Started.Started.empty());
}

TEST_F(FixTest, CanBeLeftBeforeTheNextProblem) {
  for (const std::u16string_view Name : {u"v", u"w"})
    Fix_->Add(u"HKEY_CURRENT_USER\\A", Name);
  auto Messages = std::make_unique<TTestMessages>();
  Messages->OnPump = [this] {
    if (!Has(u"A", u"w"))
      Fix_->Clean.StopFix();
  };
  Platform_.Messages = std::move(Messages);
  const TFixReport Report = Fix_->Run();
  EXPECT_EQ(Report.Removed, 1);
  EXPECT_TRUE(Has(u"A", u"v"));
  EXPECT_EQ(Fix_->Problems.TotalCount(), 1);
  // And while it is being recorded: then nothing is kept.
  const std::size_t Backups = Fix_->Clean.EnumerateBackups().size();
  EXPECT_EQ(Fix_->Run().BackupName, u"");
  EXPECT_TRUE(Has(u"A", u"v"));
  EXPECT_EQ(Fix_->Clean.EnumerateBackups().size(), Backups);
  // What it did not come to is none of its undo's business.
  Platform_.Registry->Open(TRegRoot::CurrentUser, u"A", TRegAccess::Full).Key->DeleteValue(u"v");
  ASSERT_TRUE(Fix_->Clean.RestoreBackup(Report.BackupName));
  Fix_->Clean.FinishRestore();
  EXPECT_TRUE(Has(u"A", u"w") && !Has(u"A", u"v"));
}

} // namespace
} // namespace hivesweep
