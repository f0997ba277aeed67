#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "repair/ExtIniFile.h"
#include "repair/RegistryClean.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {
namespace {

TEST(ExtIniFile, KeepsWhatCountsOfAText) {
  TExtIniFile File;
  File.LoadFromLines(SplitLines(u"lost=1\n ; comment\n[ Main ]\n  Name =  text = more \n"
                                u";x=1\nplain\n[Empty]\n[main]\nname=second\nOther=\n[broken\n"));
  using TLines = std::vector<std::u16string>;
  EXPECT_EQ(File.ReadSections(), (TLines{u"Main", u"Empty"}));
  EXPECT_EQ(File.ReadSectionValues(u"MAIN"),
            (TLines{u"Name=text = more", u"plain", u"name=second", u"Other=", u"[broken"}));
  EXPECT_EQ(File.ReadSection(u"main"), (TLines{u"Name", u"name", u"Other"}));
  EXPECT_EQ(File.ReadSection(u"none"), TLines());
  EXPECT_EQ(File.ReadString(u"main", u"NAME", u"d"), u"text = more") << "the first counts";
  EXPECT_EQ(File.ReadString(u"main", u"other", u"d"), u"") << "empty is not missing";
  EXPECT_EQ(File.ReadString(u"main", u"plain", u"d"), u"d");
  EXPECT_EQ(File.ReadString(u"main", u"", u"d"), u"d");
  EXPECT_EQ(File.ReadString(u"none", u"name", u"d"), u"d");
}

TEST(ExtIniFile, IsChangedInMemory) {
  TExtIniFile File;
  File.WriteString(u"A", u"x", u"1");
  File.WriteString(u"a", u"X", u"2");
  File.WriteString(u"a", u"y", u"3");
  using TLines = std::vector<std::u16string>;
  EXPECT_EQ(File.ReadSectionValues(u"A"), (TLines{u"X=2", u"y=3"}));
  File.DeleteKey(u"A", u"x");
  File.DeleteKey(u"A", u"none");
  File.DeleteKey(u"none", u"y");
  EXPECT_EQ(File.ReadSectionValues(u"A"), TLines{u"y=3"});
  EXPECT_EQ(File.ReadSections(), TLines{u"A"}) << "deleting in a missing section adds none";
  File.EraseSection(u"a");
  EXPECT_EQ(File.ReadString(u"A", u"y", u"gone"), u"gone");
}

TPlatform DataMachine() {
  TMachine Machine;
  Machine.AppData = u"C:\\Users\\me\\AppData";
  return MakeMemoryPlatform(MemoryRegistry(u""), Machine);
}

TEST(DataFolders, AreMadeBelowTheUsersApplicationData) {
  TPlatform Platform = DataMachine();
  const TRegistryClean Clean(Platform);
  const std::u16string Data = u"C:\\Users\\me\\AppData\\Orvane\\Tallowmere V4\\Hivesweep\\";
  EXPECT_EQ(Clean.Paths.MainIniPath, Data + u"Main.ini");
  EXPECT_EQ(Clean.Paths.IgnoreIniPath, Data + u"Ignore.ini");
  EXPECT_EQ(Clean.Paths.BackupFolderPath, Data + u"backup\\");
  EXPECT_EQ(Platform.Files->Look(Data + u"backup"), TPathState::Folder);
  EXPECT_EQ(Platform.Files->Look(u"C:\\Users\\me\\AppData\\Orvnae"), TPathState::Missing)
      << "that name is only tested";
}

TEST(DataFolders, ABackupFolderIsMadeUnlessTheTransposedNameIsThere) {
  // The test before the creation looks for another name than it then creates.
  TPlatform Platform = DataMachine();
  ASSERT_TRUE(CreateFolderPath(
      *Platform.Files, u"C:\\Users\\me\\AppData\\Orvnae\\Tallowmere V4\\Hivesweep\\backup"));
  const TRegistryClean Clean(Platform);
  EXPECT_EQ(Platform.Files->Look(Clean.Paths.BackupFolderPath), TPathState::Missing);
}

class TTestAreaList final : public TAreaList {
public:
  bool IsChecked(int Row) const override { return Row % 2 == 0; }
  void SetChecked(int Row, bool Checked) override {
    if (!Checked)
      Off += ToDecimal(static_cast<std::uint64_t>(Row)) + u" ";
    ++Rows;
  }
  std::u16string Off;
  int Rows = 0;
};

TEST(Settings, SwitchesAreOnButForTheDeepScan) {
  const TScratchFolder Folder;
  const std::u16string Ini = DataPathsIn(Folder.Path()).MainIniPath;
  TPlatform Local = MakeLocalServices();
  static const struct {
    const char *Why;
    const char *Text;
    std::u16string_view Off;
  } Cases[] = {
      {"no settings", "", u"16 "},
      {"the key in lower case", "[RegistryOpt]\r\nmui=0\r\n", u"12 16 "},
      {"and in capitals, as it is written", "[RegistryOpt]\r\nMUI=0\r\n", u"12 16 "},
      {"any number but 0 is on", "[RegistryOpt]\r\nOpenscan=7\r\nApp=-1\r\nHelp=00\r\n", u"4 "},
      {"what is no number is as missing", "[RegistryOpt]\r\nOpenscan=yes\r\nApp=no\r\n", u"16 "},
      {"another section", "[Other]\r\nApp=0\r\n", u"16 "},
  };
  for (const auto &C : Cases) {
    ASSERT_EQ(WriteWholeFile(Ini, C.Text), TError());
    const TAreaSwitches Switches = ReadAreaSwitches(*Local.Profiles, Ini);
    std::u16string Off;
    for (std::size_t Row = 0; Row < Switches.size(); ++Row)
      Off += Switches[Row] ? u"" : ToDecimal(Row) + u" ";
    EXPECT_EQ(Off, C.Off) << C.Why;
  }
  // Without any file, through the list of check boxes.
  TPlatform Platform = DataMachine();
  TTestAreaList List;
  TRegistryClean(Platform).LoadAreaSwitches(List);
  EXPECT_EQ(List.Off, u"16 ");
  EXPECT_EQ(List.Rows, 17);
}

TEST(Settings, ATotalIsNeverLost) {
  static const struct {
    const char *Why;
    std::string Stored, After;
    bool Counted = true;
  } Cases[] = {
      {"none yet", "", "5"},
      {"ten digits", "1234567890", "1234567895"},
      {"less than none", "-7", "-2"},
      {"the largest number", "9223372036854775807", "9223372036854775807"},
      {"close to it", "9223372036854775805", "9223372036854775805"},
      {"more than that", "123456789012345678901234567890", "123456789012345678901234567890"},
      {"no number", "0x10", "0x10", false},
      {"words", "many", "many", false},
  };
  for (const auto &C : Cases) {
    const TScratchFolder Folder;
    TPlatform Platform = MakeLocalServices();
    TRegistryClean Clean(Platform, DataPathsIn(Folder.Path()));
    ASSERT_EQ(
        WriteWholeFile(Clean.Paths.MainIniPath, "[Registrysummer]\r\ntotal=" + C.Stored + "\r\n"),
        TError());
    EXPECT_EQ(Clean.RecordStatistics(5, false), C.Counted) << C.Why;
    EXPECT_EQ(ToUtf8(Platform.Profiles->ReadString(Clean.Paths.MainIniPath, u"Registrysummer",
                                                   u"total", u"-")),
              C.After)
        << C.Why;
  }
}

TEST(Settings, SwitchesAreWrittenAsTheyHaveAlwaysBeen) {
  const TScratchFolder Folder;
  TPlatform Platform = MakeLocalServices();
  TTestProfiles &Profiles = TTestProfiles::In(Platform);
  TRegistryClean Clean(Platform, DataPathsIn(Folder.Path()));
  TTestAreaList List; // every second row is checked
  ASSERT_TRUE(Clean.SaveAreaSwitches(List));
  EXPECT_EQ(Profiles.Writes, 1) << "a large file would be written again and again";
  std::string Bytes;
  ASSERT_EQ(ReadWholeFile(Clean.Paths.MainIniPath, Bytes), TError());
  ASSERT_TRUE(Bytes.starts_with("\xFF\xFE")) << "a new file can hold every letter";
  const std::u16string Text = DecodeTextFile(Bytes);
  EXPECT_NE(Text.find(u"\r\nMUI=1\r\n"), std::u16string::npos) << "read as \"Mui\"";
  EXPECT_NE(Text.find(u"Active=1\r\nApp=0\r\n"), std::u16string::npos);
  Clean.LoadAreaSwitches(List);
  EXPECT_EQ(Profiles.Reads, 1);
  EXPECT_EQ(List.Off, u"1 3 5 7 9 11 13 15 ");

  // A file that is there keeps its encoding, and the rest of what it says.
  ASSERT_EQ(WriteWholeFile(Clean.Paths.MainIniPath, "; mine\r\n[RegistryOpt]\r\nmui=0\r\n"),
            TError());
  SetReadOnly(Clean.Paths.MainIniPath, true);
  ASSERT_TRUE(Clean.SaveAreaSwitches(List));
  ASSERT_EQ(ReadWholeFile(Clean.Paths.MainIniPath, Bytes), TError());
  EXPECT_TRUE(Bytes.starts_with("; mine\r\n[RegistryOpt]\r\n"));
  const std::u16string Lower = AsciiLower(FromAnsi(Bytes));
  EXPECT_NE(Lower.find(u"mui=1\r\n"), std::u16string::npos);
  EXPECT_EQ(Lower.find(u"mui=0"), std::u16string::npos) << "both spellings are one key";
}

} // namespace
} // namespace hivesweep
