// What every file host promises, run over all of them.
#include <algorithm>

#include <gtest/gtest.h>

#include "platform/memory/Machine.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

class TMemoryTestDisk final : public TTestDisk {
public:
  explicit TMemoryTestDisk(const std::vector<std::u16string> &Content) {
    TMachine Machine;
    Machine.Files.push_back(Folder() + u"\\");
    for (const std::u16string &Path : Content)
      Machine.Files.push_back(Folder() + u"\\" + Path);
    Platform_ = MakeMemoryPlatform(nullptr, Machine);
  }

  TFileSystem &Files() override { return *Platform_.Files; }
  TDrives &Drives() override { return *Platform_.Drives; }
  std::u16string Folder() const override { return u"C:\\Some Folder"; }

private:
  TPlatform Platform_;
};

std::vector<TDiskKind> AllDisks() {
  std::vector<TDiskKind> Kinds = LiveDisks();
  Kinds.push_back(
      {"Memory", [](const std::vector<std::u16string> &Content) -> std::unique_ptr<TTestDisk> {
         return std::make_unique<TMemoryTestDisk>(Content);
       }});
  return Kinds;
}

class FilesContract : public testing::TestWithParam<TDiskKind> {
protected:
  void Make(const std::vector<std::u16string> &Content) { Disk = GetParam().Make(Content); }
  TPathState Look(std::u16string_view Below) {
    return Disk->Files().Look(Disk->Folder() + u"\\" + std::u16string(Below));
  }

  // The real disk, not one in memory.
  bool IsLive() const { return std::string_view(GetParam().Name) == "Live"; }

  std::unique_ptr<TTestDisk> Disk;
};

INSTANTIATE_TEST_SUITE_P(Hosts, FilesContract, testing::ValuesIn(AllDisks()),
                         [](const auto &Kind) { return std::string(Kind.param.Name); });

// Folders of one letter with a file "end" in the last one: a path of 300 units and more.
std::u16string DeepPath() {
  std::u16string Path;
  for (int Level = 0; Level < 6; ++Level)
    Path += std::u16string(50, u'a') + u"\\";
  return Path + u"end";
}

TEST_P(FilesContract, LooksPathsUpAsWindowsDoes) {
  const std::u16string Deep = DeepPath();
  Make({u"file.txt", u"folder\\", u"folder\\in it.txt", u"a.b..c", u"no extension",
        u"\u00C4\u0416\u65E5.txt", Deep});
  using enum TPathState;
  std::u16string Dots;
  for (int Count = 0; Count < 150; ++Count)
    Dots += u".\\";
  const struct {
    const char *Why;
    std::u16string Path;
    TPathState State;
  } Cases[] = {
      {"a file", u"file.txt", File},
      {"a folder", u"folder", Folder},
      {"a file in it", u"folder\\in it.txt", File},
      {"a name without extension", u"no extension", File},
      {"dots inside a name", u"a.b..c", File},
      {"letters of other scripts", u"\u00C4\u0416\u65E5.txt", File},
      {"missing", u"file2.txt", Missing},
      {"the beginning of a name", u"file", Missing},
      {"the folder is missing", u"nowhere\\file.txt", Missing},
      {"missing in a folder", u"folder\\file.txt", Missing},
      {"a file used as a folder", u"file.txt\\x", Missing},
      {"another case", u"FOLDER\\In It.TXT", File},
      {"another case of other scripts", u"\u00E4\u0436\u65E5.TXT", File},
      {"slashes", u"folder/in it.txt", File},
      {"doubled backslashes", u"folder\\\\\\in it.txt", File},
      {"a folder's last backslash", u"folder\\", Folder},
      {"a file's last backslash", u"file.txt\\", File},
      {"both ends of slashes", u"folder//", Folder},
      {"blanks at the end", u"file.txt  ", File},
      {"dots at the end", u"file.txt..", File},
      {"a folder with a dot at its end", u"folder.\\in it.txt", File},
      {"here", u".\\folder\\.\\in it.txt", File},
      {"up", u"folder\\..\\file.txt", File},
      {"up from a folder that is missing", u"nowhere\\..\\file.txt", File},
      {"the folder itself", u"folder\\.", Folder},
      {"a long path", Deep, File},
      {"a long path in another case, with slashes",
       UpperCase(Deep.substr(0, 50)) + u"/" + Deep.substr(51), File},
      {"missing at a long path", Deep + u"2", Missing},
      {"the folder at a long path", Deep.substr(0, Deep.size() - 4), Folder},
      {"a short path written long", Dots + u"file.txt", File},
      {"missing, written long", Dots + u"file2.txt", Missing},
      {"a question mark finds nothing", u"file.tx?", Missing},
      {"an asterisk finds nothing", u"*", Missing},
      {"a quote", u"\"file.txt\"", Missing},
      {"less", u"file.tx<", Missing},
      {"greater", u"file.tx>", Missing},
      {"a bar", u"file.txt|", Missing},
      {"a control character", u"file.txt\n", Missing},
      {"a zero does not end the path", std::u16string(u"file.txt\0x", 10), Missing},
      {"two paths in one text", u"file.txt;" + Disk->Folder() + u"\\file.txt", Missing},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(Look(C.Path), C.State) << C.Why;
}

TEST_P(FilesContract, APathThatDependsOnTheCurrentFolderIsNotJudged) {
  Make({});
  for (const std::u16string_view Path :
       {u"", u"x", u"C:", u"C:x", u"\\x", u"/x", u"..\\x", u"\\", u"\\\\", u"\\\\server",
        u"\\\\no-such-server\\share\\x", u"\\\\?\\C:\\x", u"\\\\.\\C:", u"1:\\x", u"http://x/y"}) {
    EXPECT_EQ(Disk->Files().Look(Path), TPathState::Unknown) << ToUtf8(Path);
    EXPECT_FALSE(Disk->Files().CreateFolder(Path)) << ToUtf8(Path);
  }
  EXPECT_EQ(Disk->Files().Look(u"C:\\"), TPathState::Folder);
  EXPECT_EQ(Disk->Files().Look(u"c:/"), TPathState::Folder);
}

TEST_P(FilesContract, ListsWhatIsDirectlyInAFolder) {
  const std::u16string Deep = DeepPath();
  Make({u"b.txt", u"A long name.txt", u"sub\\", u"sub\\below.txt", u"sub 2.txt", u"empty\\",
        u"\u0416\u65E5", Deep});
  using TNames = std::vector<std::u16string>;
  // Sorted: a disk has an order of its own. A folder's name gets a backslash.
  const auto List = [&](std::u16string_view Folder, std::size_t Most, bool Complete) {
    TNames Names;
    const bool Answer = Disk->Files().List(Folder, [&](const TFolderEntry &Entry) {
      Names.push_back(std::u16string(Entry.Name) + (Entry.IsFolder ? u"\\" : u""));
      return Names.size() < Most;
    });
    EXPECT_EQ(Answer, Complete) << ToUtf8(Folder);
    std::sort(Names.begin(), Names.end());
    return Names;
  };
  const std::u16string Folder = Disk->Folder();
  const TNames All = {u"A long name.txt", std::u16string(50, u'a') + u"\\",
                      u"b.txt",           u"empty\\",
                      u"sub 2.txt",       u"sub\\",
                      u"\u0416\u65E5"};
  EXPECT_EQ(List(Folder, 100, true), All);
  EXPECT_EQ(List(UpperCase(Folder) + u"/.\\", 100, true), All);
  EXPECT_EQ(List(Folder + u"\\sub", 100, true), TNames{u"below.txt"});
  EXPECT_EQ(List(Folder + u"\\empty", 100, true), TNames());
  EXPECT_EQ(List(Folder + u"\\" + Deep.substr(0, Deep.size() - 4), 100, true), TNames{u"end"});
  EXPECT_EQ(List(Folder, 3, false).size(), 3u) << "no more than was wanted";
  for (const std::u16string &None :
       {Folder + u"\\missing", Folder + u"\\b.txt", Folder + u"\\s*", std::u16string(u"sub"),
        std::u16string(), Folder + std::u16string(u"\\sub\0", 5)})
    EXPECT_EQ(List(None, 100, false), TNames());
}

TEST_P(FilesContract, CreatesOneFolderOrAWholePath) {
  Make({u"file"});
  const auto Create = [&](std::u16string_view Below) {
    return Disk->Files().CreateFolder(Disk->Folder() + u"\\" + std::u16string(Below));
  };
  EXPECT_TRUE(Create(u"new"));
  EXPECT_EQ(Look(u"new"), TPathState::Folder);
  EXPECT_FALSE(Create(u"new")) << "is there already";
  EXPECT_FALSE(Create(u"file")) << "a file has the name";
  EXPECT_FALSE(Create(u"file\\x")) << "below a file";
  EXPECT_FALSE(Create(u"missing\\x")) << "the parent is missing";
  EXPECT_FALSE(Create(u"a?b")) << "no name for a folder";
  EXPECT_FALSE(Create(std::u16string(u"cut\0x", 5))) << "a zero inside";
  EXPECT_EQ(Look(u"cut"), TPathState::Missing);

  const auto CreatePath = [&](std::u16string_view Below) {
    return CreateFolderPath(Disk->Files(), Disk->Folder() + u"\\" + std::u16string(Below));
  };
  EXPECT_TRUE(CreatePath(u"p/q\\\\r\\"));
  EXPECT_EQ(Look(u"p\\q\\r"), TPathState::Folder);
  EXPECT_TRUE(CreatePath(u"p\\q\\r"));
  EXPECT_FALSE(CreatePath(u"file\\x\\y"));
  EXPECT_TRUE(CreatePath(DeepPath()));
  EXPECT_EQ(Look(DeepPath()), TPathState::Folder);
}

TEST_P(FilesContract, AFileIsWrittenWithItsTimesAndAttributes) {
  enum : std::uint32_t { ReadOnly = 1, Hidden = 2, Archive = 32 };
  Make({u"folder\\", DeepPath()});
  std::string Large;
  for (int Number = 0; Number < 700'000; ++Number)
    Large.push_back(static_cast<char>(Number * 7));
  const std::uint64_t Year2001 = 126'227'808'000'000'000, Second = 10'000'000;
  const struct {
    const char *Why;
    std::u16string Path;
    TFileContent Content;
  } Cases[] = {
      {"new", u"f", {"x", Year2001, Year2001 + 5 * Second, Year2001 + 9 * Second, Archive}},
      {"larger, over another", u"f", {Large, Year2001 + Second, Year2001, Year2001, Archive}},
      {"to be read only", u"F", {"new", Year2001, Year2001, Year2001, Archive | ReadOnly}},
      {"over a read-only one", u"f", {"", Year2001, Year2001, Year2001 + 1, Archive | ReadOnly}},
      {"no more read-only",
       u"f",
       {std::string("\0\r\n\x1A\xFF", 5), Year2001, Year2001, Year2001, Archive}},
      {"hidden", u"folder/\u00C4\u0416\u65E5", {"h", Year2001, Year2001, Year2001, Hidden}},
      {"at a long path", DeepPath(), {"long", Year2001, Year2001, Year2001, Archive}},
  };
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Why);
    const std::u16string Path = Disk->Folder() + u"\\" + C.Path;
    EXPECT_EQ(Disk->Files().WriteContent(Path, C.Content), TFileStatus::Ok);
    TFileContent Read;
    EXPECT_EQ(Disk->Files().ReadContent(Path, Read), TFileStatus::Ok);
    EXPECT_TRUE(Read.Bytes == C.Content.Bytes) << Read.Bytes.size();
    EXPECT_EQ(Read.Written, C.Content.Written);
    EXPECT_EQ(Read.Accessed, C.Content.Accessed);
    // Wine's disk has no time of creation.
    if (!IsLive() || !IsWine()) {
      EXPECT_EQ(Read.Created, C.Content.Created);
    }
    EXPECT_EQ(Read.Attributes & (ReadOnly | Hidden), C.Content.Attributes & (ReadOnly | Hidden));
  }
  std::size_t Count = 0;
  EXPECT_TRUE(
      Disk->Files().List(Disk->Folder(), [&](const TFolderEntry &) { return ++Count > 0; }));
  EXPECT_EQ(Count, 3u) << "another file was left behind";
}

TEST_P(FilesContract, WhatBecameOfAFileIsSaid) {
  using enum TFileStatus;
  Make({u"file", u"read only", u"folder\\in it"});
  const auto Whole = [&](std::u16string_view Below) {
    return Disk->Folder() + u"\\" + std::u16string(Below);
  };
  TFileContent Content;
  Content.Attributes = 1;
  Content.Bytes = "kept";
  ASSERT_EQ(Disk->Files().WriteContent(Whole(u"read only"), Content), Ok);
  const struct {
    const char *Why;
    std::u16string Path;
    TFileStatus Read, Write, Remove;
  } Cases[] = {
      {"missing", Whole(u"missing"), NotFound, Ok, Ok},
      {"its folder is missing", Whole(u"nowhere\\x"), NotFound, NotFound, NotFound},
      {"no name for a file", Whole(u"a?b"), NotFound, Failed, NotFound},
      {"a zero inside", Whole(std::u16string(u"file\0x", 6)), NotFound, Failed, NotFound},
      {"not absolute", u"file", Failed, Failed, Failed},
      {"a device", u"\\\\.\\C:", Failed, Failed, Failed},
  };
  Content = {"new", 0, 0, 0, 0};
  TFileContent Read;
  for (const auto &C : Cases) {
    Read.Bytes = "left over";
    EXPECT_EQ(Disk->Files().ReadContent(C.Path, Read), C.Read) << C.Why;
    EXPECT_EQ(Read, TFileContent()) << C.Why;
    EXPECT_EQ(Disk->Files().WriteContent(C.Path, Content), C.Write) << C.Why;
    EXPECT_EQ(Disk->Files().RemoveFile(C.Path), C.Remove) << C.Why;
    EXPECT_NE(Disk->Files().RemoveFile(C.Path), Ok) << C.Why << ": it has gone";
  }
  EXPECT_EQ(Disk->Files().ReadContent(Whole(u"folder"), Read), Failed);
  EXPECT_NE(Disk->Files().WriteContent(Whole(u"folder"), Content), Ok);
  EXPECT_NE(Disk->Files().RemoveFile(Whole(u"folder")), Ok);
  EXPECT_EQ(Look(u"folder\\in it"), TPathState::File);
  EXPECT_NE(Disk->Files().ReadContent(Whole(u"file\\x"), Read), Ok) << "below a file";

  EXPECT_EQ(Disk->Files().RemoveFile(Whole(u"read only")), Denied);
  EXPECT_EQ(Disk->Files().ReadContent(Whole(u"read only"), Read), Ok);
  EXPECT_EQ(Read.Bytes, "kept");
  EXPECT_EQ(Disk->Files().RemoveFile(Whole(u"FILE")), Ok);
  EXPECT_EQ(Look(u"file"), TPathState::Missing);
}

TEST_P(FilesContract, OnlyARootHasADriveType) {
  Make({});
  EXPECT_EQ(Disk->Drives().TypeOf(u"C:\\"), TDriveType::Fixed);
  EXPECT_EQ(Disk->Drives().TypeOf(u"c:/"), TDriveType::Fixed);
  for (const std::u16string_view Text : {u"", u"C", u"C:", u"\\", u"C:\\Windows", u"C:\\\\",
                                         u"x:\\y", u"\\\\server\\share\\", u"1:\\", u"C;\\"})
    EXPECT_EQ(Disk->Drives().TypeOf(Text), TDriveType::NoRoot) << ToUtf8(Text);
}

} // namespace
} // namespace hivesweep
