// What only a POSIX system can show: a full disk, its signals, permission bits.
#include <csignal>
#include <cstdlib>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include "platform/Console.h"
#include "platform/DiskFile.h"
#include "platform/Text.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

// While it lives, no file can grow beyond so many bytes, as if the disk were full.
class TSmallDisk {
public:
  explicit TSmallDisk(rlim_t Bytes) : OldHandler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &Old_);
    const rlimit Small = {Bytes, Old_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &Small);
  }
  TSmallDisk(const TSmallDisk &) = delete;
  TSmallDisk &operator=(const TSmallDisk &) = delete;
  ~TSmallDisk() {
    setrlimit(RLIMIT_FSIZE, &Old_);
    std::signal(SIGXFSZ, OldHandler_);
  }

private:
  void (*OldHandler_)(int);
  rlimit Old_ = {};
};

TEST(PosixHosts, AFileThatDoesNotFitLeavesTheOldOneAndNothingElse) {
  const TScratchFolder Scratch;
  const std::u16string File = Scratch.File(u"x");
  ASSERT_EQ(WriteWholeFile(File, "old"), TError());
  ASSERT_EQ(chmod(ToUtf8(File).c_str(), 0640), 0);
  for (const rlim_t Room : {0u, 1u, 5'000u, 9'999u}) {
    TError Error;
    {
      const TSmallDisk Full(Room);
      Error = WriteWholeFile(File, std::string(10'000, 'n'));
    }
    EXPECT_NE(Error, TError()) << Room;
    std::string Read;
    EXPECT_EQ(ReadWholeFile(File, Read), TError());
    EXPECT_EQ(Read, "old") << Room;
    EXPECT_EQ(Scratch.Count(), 1u) << Room;
  }
  EXPECT_EQ(WriteWholeFile(File, "new"), TError());
  struct stat Found = {};
  ASSERT_EQ(stat(ToUtf8(File).c_str(), &Found), 0);
  EXPECT_EQ(Found.st_mode & 0777, 0640u) << "the new one may be read by others than the old one";
}

// What the path itself is, where it is a link as well.
mode_t KindOf(const std::u16string &Path) {
  struct stat Found = {};
  return lstat(ToUtf8(Path).c_str(), &Found) == 0 ? Found.st_mode & S_IFMT : 0;
}

TEST(PosixHosts, LinksAndPipesAndDevicesAreWrittenAndNeverReplaced) {
  static const struct {
    const char *Name;
    const char *Target; // null: a pipe
    bool Written;
    const char *Content; // the file that has it then; null: there is none to be read
  } Cases[] = {{"there", "target", true, "target"}, {"chain", "there", true, "target"},
               {"dangling", "new", true, "new"},    {"null", "/dev/null", true, nullptr},
               {"pipe", nullptr, true, nullptr},    {"circle", "circle", false, nullptr}};
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  ASSERT_EQ(WriteWholeFile(Scratch.File(u"target"), "old"), TError());
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Name);
    const std::u16string File = Scratch.File(FromUtf8(C.Name));
    const std::string Name = ToUtf8(File);
    ASSERT_EQ(C.Target ? symlink(C.Target, Name.c_str()) : mkfifo(Name.c_str(), 0600), 0);
    const mode_t Kind = KindOf(File);
    const int Reader = C.Target ? -1 : open(Name.c_str(), O_RDONLY | O_NONBLOCK);
    EXPECT_EQ(WriteWholeFile(File, C.Name) == TError(), C.Written);
    std::string Read(4, '\0');
    if (C.Content) {
      EXPECT_EQ(ReadWholeFile(Scratch.File(FromUtf8(C.Content)), Read), TError());
      EXPECT_EQ(Read, C.Name);
    } else if (C.Written) {
      EXPECT_EQ(C.Target ? 4 : read(Reader, Read.data(), Read.size()), 4);
      EXPECT_EQ(ReadWholeFile(File, Read), NoRegularFile());
      EXPECT_EQ(Platform.Storage->Write(File, "x"), NoRegularFile());
    }
    const TIniChange Change = {u"a", u"1"};
    EXPECT_EQ(!Platform.Profiles->WriteSection(File, u"S", {&Change, 1}), C.Content != nullptr);
    EXPECT_EQ(KindOf(File), Kind) << "it was replaced";
    close(Reader);
  }
  EXPECT_EQ(KindOf(u"/dev/null"), mode_t{S_IFCHR});
}

TEST(PosixHosts, OfASettingsFileOnlyTheOneTextChanges) {
  static const struct {
    const char *Why;
    std::string_view Before;
    std::optional<std::u16string_view> Text; // of the key "a" in the section "S"
    std::string_view After;                  // empty: it is refused, and nothing changes
  } Cases[] = {
      {"comments, blanks and names stay", "; 1\n\n[s] ; 2\n A =\t\"1\" \n;a=2\nA=3\n\n[T]\na=4",
       u"x", "; 1\n\n[s] ; 2\n A =\tx \n;a=2\nA=3\n\n[T]\na=4"},
      {"a new key stands behind the last line", "[S]\nb=1\n;c\n\n[T]\n", u"x",
       "[S]\nb=1\n;c\na=x\n\n[T]\n"},
      {"in lines that end as all others", "[S]\rb=1", u"x", "[S]\rb=1\ra=x"},
      {"a new section", "[T]\r\na=1", u"x", "[T]\r\na=1\r\n[S]\r\na=x\r\n"},
      {"a line is deleted whole", "[S]\r\n\r\n a = 1 \r\nb=2", std::nullopt, "[S]\r\n\r\nb=2"},
      {"at the end", "[S]\na=1", std::nullopt, "[S]\n"},
      {"UTF-8", "[S]\r\n\xC3\xA4=1\r\na=", u"\u0416", "[S]\r\n\xC3\xA4=1\r\na=\xD0\x96"},
      {"UTF-8 with a mark", "\xEF\xBB\xBF[S]\na=1", u"\u0416", "\xEF\xBB\xBF[S]\na=\xD0\x96"},
      {"UTF-16 with the high byte first",
       {"\xFE\xFF\0[\0S\0\n\0a\0=", 12},
       u"\u0416",
       {"\xFE\xFF\0[\0S\0\n\0a\0=\x04\x16", 14}},
      {"half a unit at the end", {"\xFF\xFE[\0S\0]\0\n", 9}, u"x", ""},
      {"no UTF-8 in spite of its mark", "\xEF\xBB\xBF[S]\n\xFF=1", u"x", ""},
  };
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::u16string File = Scratch.File(u"s.ini");
  for (const auto &C : Cases) {
    ASSERT_EQ(WriteWholeFile(File, C.Before), TError());
    EXPECT_EQ(WriteIni(*Platform.Profiles, File, u"S", u"a", C.Text), !C.After.empty()) << C.Why;
    std::string Bytes;
    EXPECT_EQ(ReadWholeFile(File, Bytes), TError());
    EXPECT_EQ(Bytes, C.After.empty() ? C.Before : C.After) << C.Why;
  }
}

TEST(PosixHosts, WidthComesFromTheEnvironmentWhereThereIsNoTerminal) {
  static const struct {
    const char *Columns;
    int Width;
  } Cases[] = {{"77", 77}, {"", 0},   {"x", 0},           {"77x", 0},  {" 77", 0},
               {"0", 0},   {"-5", 0}, {"99999999999", 0}, {nullptr, 0}};
  testing::internal::CaptureStdout(); // no terminal any more, whoever runs this
  std::vector<int> Widths;
  for (const auto &C : Cases) {
    if (C.Columns)
      setenv("COLUMNS", C.Columns, 1);
    else
      unsetenv("COLUMNS");
    Widths.push_back(TerminalWidth(TConsoleStream::Output));
  }
  testing::internal::GetCapturedStdout();
  for (std::size_t Index = 0; Index < Widths.size(); ++Index)
    EXPECT_EQ(Widths[Index], Cases[Index].Width) << Index;
}

TEST(PosixHosts, AFileWhoseNameIsNoUtf8IsRemovedAndNotOnlySaidToBe) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::string Folder = ToUtf8(Scratch.Path()) + "/";
  for (const std::string Name :
       {"\xFF.reg", "a\xC3", "\xED\xB3\xBF", "\xF0\x9F\x98\x80\xE4", "\xC3\xA4\xF0\x9F\x98\x80"}) {
    ASSERT_EQ(WriteWholeFile(PathFromBytes(Folder + Name), "x"), TError());
    EXPECT_EQ(access((Folder + Name).c_str(), F_OK), 0);
    std::vector<TStoredFile> Found;
    EXPECT_EQ(Platform.Storage->List(Scratch.Path(), Found), TError());
    ASSERT_EQ(Found.size(), 1u);
    EXPECT_EQ(Platform.Storage->Remove(Scratch.File(Found[0].Name)), TError());
    EXPECT_EQ(Scratch.Count(), 0u) << ToUtf8(Found[0].Name);
  }
}

TEST(PosixHosts, AHeldFileIsFreeWhenItsHolderIsKilled) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::u16string File = Scratch.File(u"lock");
  int Ready[2] = {};
  ASSERT_EQ(pipe(Ready), 0);
  const pid_t Child = fork();
  if (Child == 0) {
    const THolding Held = Platform.Storage->Hold(File);
    const char Answer = Held.File ? 'y' : 'n';
    if (write(Ready[1], &Answer, 1) == 1)
      pause();
    _exit(1);
  }
  char Answer = 0;
  EXPECT_TRUE(read(Ready[0], &Answer, 1) == 1 && Answer == 'y');
  EXPECT_EQ(Platform.Storage->Hold(File).HolderProcess, static_cast<std::uint32_t>(Child));
  kill(Child, SIGKILL);
  waitpid(Child, nullptr, 0);
  EXPECT_TRUE(Platform.Storage->Hold(File).File);
  close(Ready[0]);
  close(Ready[1]);
}

// In a process of its own: the flag can't be taken back.
TEST(PosixHostsDeathTest, TheFirstInterruptIsAFlagTheSecondEndsTheProgram) {
  EXPECT_EXIT(
      {
        CatchInterrupt();
        if (WasInterrupted())
          std::_Exit(1);
        std::raise(SIGINT);
        if (!WasInterrupted())
          std::_Exit(2);
        std::raise(SIGINT);
        std::_Exit(3);
      },
      testing::KilledBySignal(SIGINT), "");
}

} // namespace
} // namespace hivesweep
