#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

class BackupsTest : public testing::Test {
protected:
  BackupsTest()
      : Platform_(MakeMemoryPlatform(MemoryRegistry(u""), {})), Fix_(Platform_, Folder_.Path()),
        Clean_(Fix_.Clean) {
    EXPECT_EQ(Platform_.Storage->CreateFolder(Clean_.Paths.BackupFolderPath), TError());
    EXPECT_EQ(Platform_.Storage->CreateFolder(Clean_.Paths.UndoFolderPath), TError());
  }
  void Put(std::u16string_view Name, std::string_view Bytes = "text") {
    ASSERT_EQ(WriteWholeFile(Clean_.Paths.BackupFolderPath + std::u16string(Name), Bytes),
              TError());
  }
  void PutRecord(std::u16string_view Name) {
    TUndoRecord Record;
    Record.ViewBits = ThisView();
    Record.Changes = 7;
    ASSERT_EQ(WriteWholeFile(Clean_.Paths.UndoFolderPath + std::u16string(Name),
                             EncodeUndoRecord(Record)),
              TError());
  }
  std::vector<std::u16string> Names() const {
    std::vector<std::u16string> Out;
    for (const TBackupEntry &Entry : Clean_.EnumerateBackups())
      Out.push_back(Entry.Name);
    std::ranges::sort(Out);
    return Out;
  }

  TScratchFolder Folder_;
  TPlatform Platform_;
  TTestFix Fix_;
  TRegistryClean &Clean_;
};

TEST_F(BackupsTest, AreKnownByTheirNames) {
  for (const std::u16string_view Name :
       {u"backup20090715143005.reg", u"notes.txt", u"backupX.txt", u"backup", u"backup.x.reg",
        u"Backup1.reg", u"backup1.regold", u"mybackup.reg"})
    Put(Name);
  PutRecord(u"backup20090715143005.undo");
  PutRecord(u"backup20100101000000.undo");
  PutRecord(u"backup20100101000001.pending");
  EXPECT_EQ(Platform_.Storage->CreateFolder(Clean_.Paths.BackupFolderPath + u"backupfolder.reg"),
            TError());
  EXPECT_EQ(Names(), (std::vector<std::u16string>{u"backup1.regold", u"backup20090715143005.reg",
                                                  u"backup20100101000000.reg"}));
  for (const TBackupEntry &Entry : Clean_.EnumerateBackups())
    EXPECT_EQ(Entry.Changes, Entry.Name == u"backup1.regold" ? 0 : 7) << ToUtf8(Entry.Name);
}

TEST_F(BackupsTest, RowsHaveTheirNameInTheThirdCellForMostSizes) {
  const auto Row = [](std::int64_t Size) {
    TBackupEntry Entry;
    Entry.Name = u"n";
    Entry.Changes = 3;
    Entry.Size = Size;
    Entry.Time = {2009, 7, 5, 4, 3, 2};
    TTestRows Rows;
    FillRows({&Entry, 1}, Rows);
    return ToUtf8(Rows.Rows.at(0));
  };
  static const struct {
    std::int64_t Size;
    const char *Cells;
  } Cases[] = {
      {999, "999 Byte|"},
      {0, "0 Byte|"},
      {1000, ""}, // neither below nor above: no cell, so the name is found elsewhere
      {1001, "1 KB|"},
      {2500, "2.5 KB|"},
      {12345, "12.35 KB|"},
      {1'000'000, "1000 KB|"},
      {1'060'000, "1060 KB|1.06 M|"}, // two cells
  };
  for (const auto &C : Cases)
    EXPECT_EQ(Row(C.Size), std::string("07/05/2009 04:03:02|3|") + C.Cells + "n");
}

TEST_F(BackupsTest, ARecordIsOnlyWorthWhatItsChecksumSays) {
  TUndoRecord Record;
  Record.Changes = 7;
  const std::string Whole = EncodeUndoRecord(Record);
  std::string Flipped = Whole;
  Flipped[30] ^= 1;
  const struct {
    const char *Why;
    std::optional<std::string> Bytes; // nothing: no record
    TUndoState State;
    std::int32_t Changes; // without a good record the keys that the text names
  } Cases[] = {{"whole", Whole, TUndoState::Whole, 7},
               {"none", std::nullopt, TUndoState::None, 2},
               {"four bytes of junk", "junk", TUndoState::Damaged, 2},
               {"cut", Whole.substr(0, Whole.size() - 1), TUndoState::Damaged, 2},
               {"one bit", Flipped, TUndoState::Damaged, 2}};
  Put(u"backup1.reg",
      "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_USERS\\a]\r\n\"x\"=\"[no]\""
      "\r\n[HKEY_USERS\\a]\r\n\"h\"=hex:01,\\\r02\r\n");
  const std::u16string Path = Clean_.Paths.UndoFolderPath + u"backup1.undo";
  for (const auto &C : Cases) {
    EXPECT_EQ(C.Bytes ? WriteWholeFile(Path, *C.Bytes) : Platform_.Storage->Remove(Path), TError());
    const TBackupEntry Entry = Clean_.EnumerateBackups().at(0);
    EXPECT_EQ(Entry.Record, C.State) << C.Why;
    EXPECT_EQ(Entry.Changes, C.Changes) << C.Why;
  }
}

TEST_F(BackupsTest, TwoOldOnesSurviveByTheOrderOfTheList) {
  // Each backup is named by its place in the list and has this time.
  static const struct {
    const char *Why;
    std::vector<int> Times;
    std::u16string_view Deleted;
    std::vector<std::uint64_t> Numbers = {}; // of their records; empty: they have none
  } Cases[] = {
      {"two stay", {1, 2}, u""},
      {"a later one drives out the first, even if that was later than the second", {5, 1, 6}, u"0"},
      {"one later than the second only drives out the second", {5, 1, 3}, u"1"},
      {"an earlier one goes itself", {5, 4, 3}, u"2"},
      {"one of the same time goes itself", {5, 5, 5}, u"2"},
      {"rising: the first place changes hands", {1, 2, 3, 4}, u"02"},
      {"falling", {4, 3, 2, 1}, u"23"},
      {"numbers say what is later, not the clock", {1, 2, 3}, u"2", {3, 2, 1}},
      {"one without a number is older", {3, 2, 1}, u"0", {0, 0, 1}},
  };
  for (const auto &C : Cases) {
    std::vector<TBackupEntry> Backups;
    for (const int Second : C.Times) {
      const std::u16string Name = ToDecimal(Backups.size());
      Backups.emplace_back().Name = Name;
      Backups.back().Time.Second = Second;
      if (!C.Numbers.empty())
        Backups.back().Number = C.Numbers[Backups.size() - 1];
    }
    std::u16string Deleted;
    for (const TBackupEntry &Entry : SurplusOf(Backups))
      Deleted += Entry.Name;
    EXPECT_EQ(Deleted, C.Deleted) << C.Why;
  }
}

TEST_F(BackupsTest, AFixPrunesTheOldOnesWithTheirRecords) {
  for (int Index = 1; Index <= 4; ++Index) {
    const std::u16string Stem = u"backup" + ToDecimal(static_cast<std::uint64_t>(Index));
    Put(Stem + u".reg");
    SetAge(Clean_.Paths.BackupFolderPath + Stem + u".reg", 1000 - 100 * Index);
    PutRecord(Stem + u".undo");
  }
  for (int Index = 10; Index < 24; ++Index)
    PutRecord(u"backup" + ToDecimal(static_cast<std::uint64_t>(Index)) + u".undo");

  EXPECT_EQ(Fix_.Run().BackupName, u"") << "nothing to fix, no lines";
  EXPECT_EQ(Names().size(), 18u) << "and nothing pruned";
  Fix_.Engine.BackupText = {u"[HKEY_USERS\\a]"};
  const std::u16string New = Fix_.Run().BackupName;
  const std::vector<std::u16string> Left = Names();
  const auto TextsLeft = std::ranges::count_if(
      Clean_.EnumerateBackups(), [](const TBackupEntry &Entry) { return Entry.HasText; });
  EXPECT_EQ(TextsLeft, 3) << "two old ones and the new one";
  EXPECT_EQ(std::ranges::count(Left, New), 1);
  EXPECT_EQ(Left.size(), 3u + 9u) << "the new record was one of the ten without a text";
  EXPECT_EQ(std::ranges::count(Left, u"backup23.reg"), 1) << "the newest stay";
  std::vector<TStoredFile> Records;
  Platform_.Storage->List(Clean_.Paths.UndoFolderPath, Records);
  EXPECT_EQ(Records.size(), 3u + 9u) << "a record goes with its backup";
}

TEST_F(BackupsTest, AreDeletedOneByOne) {
  Put(u"backup1.reg");
  Put(u"backup2.reg");
  PutRecord(u"backup2.undo");
  PutRecord(u"backup3.undo");
  EXPECT_EQ(Clean_.DeleteBackup(u"backup2.reg"), TError());
  EXPECT_EQ(Clean_.DeleteBackup(u"backup3.reg"), TError());
  EXPECT_NE(Clean_.DeleteBackup(u"backup3.reg"), TError()) << "it is gone";
  EXPECT_EQ(Names(), std::vector<std::u16string>{u"backup1.reg"});
}

TEST_F(BackupsTest, ADamagedRecordIsNamedAndTheTextRestored) {
  auto Editor = std::make_unique<TTestEditor>([](std::u16string_view) {});
  TTestEditor &Started = *Editor;
  Platform_.Shell = std::move(Editor);
  Put(u"backup1.reg", "Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\x]\r\n");
  PutRecord(u"backup1.undo");
  const std::u16string Record = Clean_.Paths.UndoFolderPath + u"backup1.undo";
  std::string Bytes;
  ASSERT_EQ(ReadWholeFile(Record, Bytes), TError());
  Bytes.back() ^= 1;
  ASSERT_EQ(WriteWholeFile(Record, Bytes), TError());
  ASSERT_TRUE(Clean_.RestoreBackup(u"backup1.reg"));
  Clean_.FinishRestore();
  ASSERT_EQ(Clean_.RestoreReport().Notes.size(), 1u);
  EXPECT_EQ(Clean_.RestoreReport().Notes[0],
            Because({TErrorCode::RecordDamaged, Record}, TErrorCode::TextOnly));
  EXPECT_EQ(Started.Started,
            std::vector{u"Regedit /s \"" + Clean_.Paths.BackupFolderPath + u"backup1.reg\""});
  EXPECT_FALSE(Clean_.RestoreBackup(u"backup9.reg"));
  EXPECT_EQ(Clean_.RestoreReport().Failure.Code, TErrorCode::NoSuchBackup);
}

} // namespace
} // namespace hivesweep
