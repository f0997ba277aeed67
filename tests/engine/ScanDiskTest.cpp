#include <gtest/gtest.h>

#include "engine/ScanDisk.h"
#include "tests/engine/TestScan.h"
#include "tests/platform/CutSeam.h"

namespace hivesweep {
namespace {

class TCountedDrives final : public TDrives {
public:
  TDriveType TypeOf(std::u16string_view Root) override {
    ++Asked;
    return AsciiUpper(Root[0]) == u'C' ? TDriveType::Fixed : TDriveType::Network;
  }
  int Asked = 0;
};

TEST(ScanDisk, AsksForEachDriveOnce) {
  TPlatform Platform = MakeMemoryPlatform(nullptr, {});
  TCountedDrives Drives;
  TScanDisk Disk(*Platform.Files, Drives);
  for (int Round = 0; Round < 3; ++Round) {
    EXPECT_TRUE(Disk.IsOnFixedDrive(u"C:\\a"));
    EXPECT_TRUE(Disk.IsOnFixedDrive(u"c:/b"));
    EXPECT_FALSE(Disk.IsOnFixedDrive(u"N:\\a"));
    EXPECT_FALSE(Disk.IsOnFixedDrive(u"nothing"));
  }
  EXPECT_EQ(Drives.Asked, 2);
  Disk.Forget();
  Disk.IsOnFixedDrive(u"C:\\a");
  EXPECT_EQ(Drives.Asked, 3) << "a new scan asks again";
}

TEST(ScanDisk, TakesAFoldersNamesOnceAndNeverReportsOnTheirWord) {
  TMachine Machine;
  for (std::uint64_t File = 0; File < 50; ++File)
    Machine.Files.push_back(u"C:\\Dir\\Sub\\f\u00E9 " + ToDecimal(File) + u".dll");
  Machine.Files.emplace_back(u"C:\\Dir\\Sub\\folder\\");
  TPlatform Platform = MakeMemoryPlatform(nullptr, Machine);
  TPowerCut Questions; // only counted
  TCutFiles Files(*Platform.Files, Questions);
  TScanDisk Disk(Files, *Platform.Drives);
  for (std::uint64_t File = 0; File < 50; ++File) {
    const std::u16string Name = u"F\u00C9 " + ToDecimal(File) + u".DLL";
    EXPECT_FALSE(Disk.NoSuchFile(u"c:/dir\\\\SUB\\x\\..\\" + Name + u". "));
    EXPECT_TRUE(Disk.NoSuchFolder(u"C:\\Dir\\Sub\\" + Name));
  }
  EXPECT_EQ(Questions.Calls(), 4u) << "three files one by one, then the list of all";
  EXPECT_TRUE(Disk.NoSuchFile(u"C:\\Dir\\Sub\\folder"));
  EXPECT_FALSE(Disk.NoSuchFolder(u"C:\\Dir\\Sub\\folder\\"));
  EXPECT_EQ(Questions.Calls(), 4u);

  // A file that has come since the names were taken: a problem would be wrong.
  for (int Round = 0; Round < 2; ++Round)
    EXPECT_TRUE(Disk.NoSuchFile(u"C:\\Dir\\Sub\\late"));
  EXPECT_EQ(Questions.Calls(), 6u) << "each missing one is asked for itself";
  ASSERT_TRUE(Platform.Files->CreateFolder(u"C:\\Dir\\Sub\\late"));
  EXPECT_FALSE(Disk.NoSuchFolder(u"C:\\Dir\\Sub\\late"));
}

TEST(ScanDisk, WhatCannotBeLookedAtIsNotMissing) {
  TMachine Machine;
  Machine.Unreadable = {u"C:\\locked"};
  TPlatform Platform = MakeMemoryPlatform(nullptr, Machine);
  TScanDisk Disk(*Platform.Files, *Platform.Drives);
  for (int Round = 0; Round < 10; ++Round) {
    EXPECT_FALSE(Disk.NoSuchFile(u"C:\\locked\\a"));
    EXPECT_FALSE(Disk.NoSuchFolder(u"C:\\locked"));
    EXPECT_FALSE(Disk.NoSuchFolder(u"C:\\"));
    EXPECT_TRUE(Disk.NoSuchFile(u"C:\\gone?"));
  }
}

} // namespace
} // namespace hivesweep
