// What only a running Windows can show of the other families.
#include <atomic>

#include <gtest/gtest.h>

#include "platform/Console.h"
#include "platform/DiskFile.h"
#include "platform/Lock.h"
#include "platform/win32/LongPath.h"
#include "platform/win32/Win32.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

class Win32Hosts : public testing::Test {
protected:
  TPlatform Platform = MakeLivePlatform().value();
};

// ---- folders, drives, system ---------------------------------------------------------

TEST_F(Win32Hosts, FoldersExistAndHaveTheirPromisedForm) {
  TFolders &Folders = *Platform.Folders;
  const struct {
    const char *Why;
    std::u16string Path;
    bool EndsInBackslash;
  } Cases[] = {
      {"Windows", Folders.Windows(), false},
      {"Temp", Folders.Temp(), true},
      {"Program", Folders.Program(), true},
      {"AppData", Folders.Special(TSpecialFolder::AppData), false},
      {"CommonAppData", Folders.Special(TSpecialFolder::CommonAppData), false},
  };
  for (const auto &C : Cases) {
    EXPECT_EQ(Platform.Files->Look(C.Path), TPathState::Folder) << C.Why << ToUtf8(C.Path);
    EXPECT_EQ(C.Path.ends_with(u'\\'), C.EndsInBackslash) << C.Why << ToUtf8(C.Path);
  }
  EXPECT_EQ(Folders.Special(static_cast<TSpecialFolder>(0x3F)), u"") << "no such folder";
}

TEST_F(Win32Hosts, EnvironmentTellsEmptyFromMissing) {
  TSystem &System = *Platform.System;
  const std::u16string Long(20'000, u'\u0416');
  SetEnvironmentVariableW(L"HIVESWEEP_TEST", Wide(Long));
  EXPECT_EQ(System.Environment(u"hivesweep_test"), Long);
  SetEnvironmentVariableW(L"HIVESWEEP_TEST", L"");
  EXPECT_EQ(System.Environment(u"HIVESWEEP_TEST"), u"");
  SetEnvironmentVariableW(L"HIVESWEEP_TEST", nullptr);
  EXPECT_EQ(System.Environment(u"HIVESWEEP_TEST"), std::nullopt);
  EXPECT_EQ(System.Environment(u""), std::nullopt);
  EXPECT_EQ(System.Environment(std::u16string(u"PATH\0x", 6)), std::nullopt);
  EXPECT_NE(System.Environment(u"PATH").value_or(u""), u"");
}

TEST_F(Win32Hosts, TheRealSystemFolderIsSeenOnlyWhileAskedFor) {
  const std::u16string System = Platform.Folders->Windows() + u"\\System32\\";
  const std::u16string File = System + u"hivesweep-test.txt";
  const bool Redirected = Platform.System->IsWow64();
  EXPECT_EQ(Redirected, Platform.Files->Look(Platform.Folders->Windows() + u"\\SysNative") ==
                            TPathState::Folder);
  EXPECT_TRUE(!Redirected || sizeof(void *) == 4);
  {
    const TRealSystemFolder Real(*Platform.Files);
    if (WriteWholeFile(File, "x"))
      GTEST_SKIP() << "the system folder may not be written";
    EXPECT_EQ(Platform.Files->Look(File), TPathState::File);
    {
      const TRealSystemFolder Again(*Platform.Files);
      EXPECT_EQ(Platform.Files->Look(File), TPathState::File);
    }
    EXPECT_EQ(Platform.Files->Look(File), TPathState::File) << "the inner one ended the outer one";
  }
  EXPECT_EQ(Platform.Files->Look(File), Redirected ? TPathState::Missing : TPathState::File);
  const TRealSystemFolder Real(*Platform.Files);
  EXPECT_TRUE(DeleteFileW(Wide(File)));
}

TEST_F(Win32Hosts, AFileThatIsHeldOrHiddenIsThere) {
  const TScratchFolder Scratch;
  const std::u16string Path = Scratch.File(u"held");
  const TFileHandle Held(CreateFileW(Wide(Path), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                     FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM, nullptr));
  ASSERT_TRUE(Held.IsOpen());
  EXPECT_EQ(Platform.Files->Look(Path), TPathState::File);
  // And it can't be replaced as long as it is held: the old one stays.
  std::string Read;
  EXPECT_NE(ReadWholeFile(Path, Read), TError());
  EXPECT_NE(WriteWholeFile(Path, "new"), TError());
  EXPECT_EQ(Scratch.Count(), 1u) << "another file was left behind";
}

TEST_F(Win32Hosts, PipesAndDevicesAreWrittenAndNotRead) {
  const std::u16string Name = u"\\\\.\\pipe\\hivesweep-test-" + ToDecimal(GetCurrentProcessId());
  const TFileHandle Pipe(
      CreateNamedPipeW(Wide(Name), PIPE_ACCESS_INBOUND, PIPE_TYPE_BYTE, 1, 0, 1000, 0, nullptr));
  ASSERT_TRUE(Pipe.IsOpen());
  EXPECT_EQ(WriteWholeFile(Name, "words"), TError());
  std::string Read(5, '\0');
  DWORD Count = 0;
  EXPECT_TRUE(ReadFile(Pipe.Get(), Read.data(), 5, &Count, nullptr));
  EXPECT_EQ(Read, "words");
  EXPECT_EQ(WriteWholeFile(u"NUL", "x"), TError());
  EXPECT_EQ(ReadWholeFile(u"NUL", Read), NoRegularFile());
}

// Another program holds the settings.
TEST_F(Win32Hosts, ASettingsFileThatIsHeldIsLeftAsItIs) {
  const TScratchFolder Folder;
  const std::u16string Path = Folder.File(u"Ignore.ini");
  const std::string Content = "[Registry]\r\na=1\r\n";
  ASSERT_EQ(WriteWholeFile(Path, Content), TError());
  {
    const TFileHandle Held(
        CreateFileW(Wide(Path), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(Held.IsOpen());
    EXPECT_FALSE(WriteIni(*Platform.Profiles, Path, u"Registry", u"b", u"2"));
    EXPECT_EQ(Platform.Profiles->ReadString(Path, u"Registry", u"a", u"unread"), u"unread");
    EXPECT_NE(Platform.Storage->Write(Path, "other"), TError());
    EXPECT_NE(Platform.Storage->Remove(Path), TError());
  }
  std::string Now;
  EXPECT_EQ(ReadWholeFile(Path, Now), TError());
  EXPECT_EQ(Now, Content);
}

// A shortcut file's bytes: the header with these flags, the place of a file, and an
// installer's description of it.
std::string AdvertisedShortcut(std::string_view Target) {
  std::string Out;
  const auto Number = [&](std::uint32_t Value) {
    Out.append(reinterpret_cast<const char *>(&Value), sizeof Value);
  };
  constexpr std::uint32_t HasLinkInfo = 0x2, IsUnicode = 0x80, HasInstallerId = 0x1000;
  Number(0x4C);
  Out.append("\x01\x14\x02\0\0\0\0\0\xC0\0\0\0\0\0\0\x46", 16);
  Number(HasLinkInfo | IsUnicode | HasInstallerId);
  Out.append(0x4C - Out.size(), '\0');
  const auto Length = static_cast<std::uint32_t>(Target.size());
  for (const std::uint32_t Value :
       {0x1Cu + 0x11u + Length + 2, 0x1Cu, 1u, 0x1Cu, 0x2Du, 0u, 0x2Du + Length + 1})
    Number(Value); // where the parts of the place stand
  for (const std::uint32_t Value : {0x11u, 3u, 0u, 0x10u})
    Number(Value); // a volume without a name
  Out.append(1, '\0').append(Target).append(2, '\0');
  Number(0x314);
  Number(0xA0000006);
  Out.append(0x314 - 8, '\0');
  Out.replace(Out.size() - 780, 4, "Prod");
  Number(0);
  return Out;
}

TEST_F(Win32Hosts, AnInstallersShortcutHasNoTargetWhateverStandsInIt) {
  const TScratchFolder Scratch;
  const std::u16string Path = Scratch.File(u"advertised.lnk");
  ASSERT_EQ(WriteWholeFile(Path, AdvertisedShortcut("C:\\gone.exe")), TError());
  EXPECT_EQ(Platform.Shell->ShortcutTarget(Path), u"");
}

TEST_F(Win32Hosts, TheCurrentUsersKeyIsTheOneThatShowsHisValues) {
  const std::u16string Key = Platform.System->UserKey();
  HKEY Opened = nullptr;
  ASSERT_EQ(RegOpenKeyExW(HKEY_USERS, Wide(Key), 0, KEY_READ, &Opened), 0) << ToUtf8(Key);
  RegCloseKey(Opened);
  HKEY Own = nullptr;
  ASSERT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, L"Hivesweep test", 0, nullptr, REG_OPTION_VOLATILE,
                            KEY_READ, nullptr, &Own, nullptr),
            0);
  RegCloseKey(Own);
  EXPECT_EQ(RegOpenKeyExW(HKEY_USERS, Wide(Key + u"\\Hivesweep test"), 0, KEY_READ, &Opened), 0);
  RegCloseKey(Opened);
  RegDeleteKeyW(HKEY_CURRENT_USER, L"Hivesweep test");
}

TEST(LongPath, IsWrittenSoThatTheSystemTakesIt) {
  const std::u16string Name(250, u'n');
  const struct {
    const char *Why;
    std::u16string Path;
    std::u16string Expected;
  } Cases[] = {
      {"short enough", u"C:/a\\..\\" + Name, u"C:/a\\..\\" + Name},
      {"one unit more", u"C:\\1234567" + Name, u"\\\\?\\C:\\1234567" + Name},
      {"what the system would do is done", u"C:/a/.././/" + Name + u". ", u"\\\\?\\C:\\" + Name},
      {"on a server", u"\\\\server\\share\\" + Name, u"\\\\?\\UNC\\server\\share\\" + Name},
      {"is so already", u"\\\\?\\C:\\1234567" + Name, u"\\\\?\\C:\\1234567" + Name},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(SystemPath(C.Path), C.Expected) << C.Why;
}

// ---- messages ----------------------------------------------------------------------------

struct TSeen {
  UINT Message;
  WPARAM WParam;
  LPARAM LParam;
};
std::vector<TSeen> Seen;

LRESULT CALLBACK OnMessage(HWND Window, UINT Message, WPARAM WParam, LPARAM LParam) {
  if (Message >= WM_APP && Message < 0xC000)
    Seen.push_back({Message, WParam, LParam});
  return DefWindowProcW(Window, Message, WParam, LParam);
}

// A window that only takes messages.
class TTestWindow {
public:
  TTestWindow() {
    WNDCLASSW Class = {};
    Class.lpfnWndProc = OnMessage;
    Class.lpszClassName = L"HivesweepTest";
    RegisterClassW(&Class);
    Window_ = CreateWindowExW(0, L"HivesweepTest", L"", 0, 0, 0, 0, 0, HWND_MESSAGE, nullptr,
                              nullptr, nullptr);
    EXPECT_NE(Window_, nullptr);
    Seen.clear();
  }
  TTestWindow(const TTestWindow &) = delete;
  TTestWindow &operator=(const TTestWindow &) = delete;
  ~TTestWindow() { DestroyWindow(Window_); }

  TWindowHandle Handle() const { return reinterpret_cast<TWindowHandle>(Window_); }

private:
  HWND Window_;
};

TEST_F(Win32Hosts, PostedMessagesArriveWhenTheyArePumped) {
  const TTestWindow Window;
  Platform.Messages->Post(Window.Handle(), WM_APP + 1, UINTPTR_MAX, INTPTR_MIN);
  Platform.Messages->Post(Window.Handle(), WM_APP + 2, 5, -6);
  EXPECT_TRUE(Seen.empty()) << "posting must not wait for the window";
  Platform.Messages->Pump();
  ASSERT_EQ(Seen.size(), 2u);
  EXPECT_EQ(Seen[0].Message, static_cast<UINT>(WM_APP + 1));
  EXPECT_EQ(Seen[0].WParam, UINTPTR_MAX);
  EXPECT_EQ(Seen[0].LParam, INTPTR_MIN);
  EXPECT_EQ(Seen[1].WParam, 5u);
  EXPECT_EQ(Seen[1].LParam, -6);
}

TEST_F(Win32Hosts, AMessageToNoWindowGoesNowhere) {
  TWindowHandle Gone = 0;
  {
    const TTestWindow Window;
    Gone = Window.Handle();
  }
  Platform.Messages->Pump();
  Platform.Messages->Post(0, WM_APP + 1, 1, 1);
  Platform.Messages->Post(Gone, WM_APP + 1, 1, 1);
  MSG Message;
  EXPECT_FALSE(PeekMessageW(&Message, nullptr, WM_APP, WM_APP + 10, PM_REMOVE));
}

TEST_F(Win32Hosts, TheEndOfTheProgramIsNotSwallowed) {
  const TTestWindow Window;
  PostQuitMessage(7);
  Platform.Messages->Post(Window.Handle(), WM_APP + 1, 1, 1);
  for (int Count = 0; Count < 3; ++Count)
    Platform.Messages->Pump();
  EXPECT_EQ(Seen.size(), 1u) << "what was posted before the end is still handled";
  MSG Message = {};
  EXPECT_TRUE(PeekMessageW(&Message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(Message.message, static_cast<UINT>(WM_QUIT));
  EXPECT_EQ(Message.wParam, 7u);
  EXPECT_FALSE(PeekMessageW(&Message, nullptr, 0, 0, PM_REMOVE)) << "it is there more than once";
}

// ---- shell, console, lock -----------------------------------------------------------------

// Waits up to ten seconds.
template <typename TCondition> bool Becomes(TCondition Condition) {
  for (int Count = 0; Count < 500; ++Count) {
    if (Condition())
      return true;
    Sleep(20);
  }
  return false;
}

TEST_F(Win32Hosts, TheShellStartsAProgramWithItsParameters) {
  const TScratchFolder Scratch;
  EXPECT_FALSE(Platform.Shell->Open(Scratch.File(u"no such program.exe"), u""));
  EXPECT_FALSE(Platform.Shell->Open(u"", u""));
  EXPECT_FALSE(Platform.Shell->Open(std::u16string(u"cmd.exe\0x", 9), u""));
  const std::u16string Made = Scratch.File(u"made by it");
  EXPECT_TRUE(Platform.Shell->Open(u"cmd.exe", u"/c mkdir \"" + Made + u"\""));
  EXPECT_TRUE(Becomes([&] { return Platform.Files->Look(Made) == TPathState::Folder; }));
  // Its maker may hold it for a moment longer.
  EXPECT_TRUE(Becomes([&] { return RemoveDirectoryW(Wide(Made)) != 0; }));
}

TEST(Win32Child, DISABLED_Sleeps) { Sleep(1'000); }

TEST_F(Win32Hosts, TheEndOfAProgramIsWaitedFor) {
  TShell &Shell = *Platform.Shell;
  EXPECT_EQ(Shell.Start(u"", u""), nullptr);
  EXPECT_EQ(Shell.Start(u"no such program.exe", u""), nullptr);
  wchar_t Self[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, Self, MAX_PATH);
  const auto Child = Shell.Start(FromWide(Self), u"--gtest_also_run_disabled_tests --gtest_output= "
                                                 u"--gtest_filter=*.DISABLED_Sleeps");
  ASSERT_NE(Child, nullptr);
  EXPECT_FALSE(Child->WaitForEnd(0));
  EXPECT_FALSE(Child->WaitForEnd(50));
  EXPECT_TRUE(Child->WaitForEnd(30'000));
  EXPECT_TRUE(Child->WaitForEnd(0)) << "it stays ended";
}

TEST_F(Win32Hosts, TheDateSeparatorIsTheUsers) {
  const std::u16string Separator = Platform.Clock->DateSeparator();
  wchar_t Date[64] = {};
  ASSERT_NE(GetDateFormatW(LOCALE_USER_DEFAULT, DATE_SHORTDATE, nullptr, nullptr, Date, 64), 0);
  EXPECT_NE(Separator, u"");
  EXPECT_NE(std::u16string_view(FromWide(Date)).find(Separator), std::u16string_view::npos);
}

// Runs one of the tests below in a process with a console of its own, with these
// arguments behind it; answers what it wrote.
std::string RunChild(std::u16string_view Test, std::u16string_view Arguments) {
  SECURITY_ATTRIBUTES Inherited = {sizeof Inherited, nullptr, TRUE};
  HANDLE Ends[2] = {};
  EXPECT_TRUE(CreatePipe(&Ends[0], &Ends[1], &Inherited, 1u << 16));
  const TFileHandle Output(Ends[0]);
  const TFileHandle Input(Ends[1]);
  wchar_t Program[MAX_PATH] = {};
  GetModuleFileNameW(nullptr, Program, MAX_PATH);
  std::u16string Line = std::u16string(u"\"") + FromWide(Program) +
                        u"\" --gtest_also_run_disabled_tests --gtest_output= --gtest_filter=" +
                        std::u16string(Test) + u" " + std::u16string(Arguments);
  STARTUPINFOW Start = {};
  Start.cb = sizeof Start;
  Start.dwFlags = STARTF_USESTDHANDLES;
  Start.hStdError = Input.Get();
  PROCESS_INFORMATION Child = {};
  EXPECT_TRUE(CreateProcessW(nullptr, Wide(Line.data()), nullptr, nullptr, TRUE, CREATE_NO_WINDOW,
                             nullptr, nullptr, &Start, &Child));
  const TFileHandle Process(Child.hProcess);
  const TFileHandle Thread(Child.hThread);
  EXPECT_EQ(WaitForSingleObject(Process.Get(), 30'000), WAIT_OBJECT_0);
  // No more than is there: the console's own process may still hold the other end.
  DWORD Count = 0;
  EXPECT_TRUE(PeekNamedPipe(Output.Get(), nullptr, 0, nullptr, &Count, nullptr));
  std::string Written(Count, '\0');
  EXPECT_TRUE(Count == 0 || ReadFile(Output.Get(), Written.data(), Count, &Count, nullptr));
  return Written;
}

TEST(Win32Child, DISABLED_WritesItsArguments) {
  std::string Text;
  for (const std::string &Argument : ConsoleArguments(0, nullptr))
    Text += "<" + Argument + ">";
  EXPECT_TRUE(ConsoleWrite(TConsoleStream::Error, Text));
}

TEST_F(Win32Hosts, ArgumentsKeepAllLettersAndBlanks) {
  const std::string Written = RunChild(u"*.DISABLED_WritesItsArguments",
                                       u"\"\u00E4 \u0416\U0001F600\" \"\" x\\\"y \"C:\\a b\\\\\"");
  EXPECT_TRUE(Written.starts_with("<--gtest_also")) << Written;
  const std::string Last = "Arguments>";
  ASSERT_NE(Written.find(Last), std::string::npos) << Written;
  EXPECT_EQ(Written.substr(Written.find(Last) + Last.size()),
            "<\xC3\xA4 \xD0\x96\xF0\x9F\x98\x80><><x\"y><C:\\a b\\>");
}

TEST(Win32Child, DISABLED_IsInterruptedTwice) {
  CatchInterrupt();
  ASSERT_FALSE(WasInterrupted());
  ASSERT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
  ASSERT_TRUE(Becomes(WasInterrupted));
  ConsoleWrite(TConsoleStream::Error, "caught");
  ASSERT_TRUE(GenerateConsoleCtrlEvent(CTRL_C_EVENT, 0));
  Sleep(10'000);
  ConsoleWrite(TConsoleStream::Error, " and still there");
}

TEST_F(Win32Hosts, TheFirstInterruptIsAFlagTheSecondEndsTheProgram) {
  EXPECT_EQ(RunChild(u"*.DISABLED_IsInterruptedTwice", u""), "caught");
}

struct TShared {
  TLock Lock;
  int Inside = 0;
  int Rounds = 0;
  bool Overlapped = false;

  static DWORD WINAPI Run(void *Parameter) {
    TShared &Self = *static_cast<TShared *>(Parameter);
    for (int Count = 0; Count < 100; ++Count) {
      const TLockGuard Guard(Self.Lock);
      Self.Overlapped |= ++Self.Inside != 1;
      if (Count % 10 == 0)
        Sleep(1);
      --Self.Inside;
      ++Self.Rounds;
    }
    return 0;
  }
};

TEST(UpperCaseTable, IsTheSystemsOwn) {
  using TUpcase = WCHAR(WINAPI *)(WCHAR);
  const auto Upcase = reinterpret_cast<TUpcase>(FindFunction(L"ntdll.dll", "RtlUpcaseUnicodeChar"));
  ASSERT_TRUE(Upcase);
  int Differences = 0;
  for (unsigned Unit = 0; Unit < 0x10000; ++Unit)
    Differences += static_cast<WCHAR>(UpperCase(static_cast<char16_t>(Unit))) !=
                   Upcase(static_cast<WCHAR>(Unit));
  // Each version of Windows knows the letters of its own time; Wine knows them all.
  EXPECT_LE(Differences, FindFunction(L"ntdll.dll", "wine_get_version") ? 0 : 500);
}

TEST_F(Win32Hosts, OneThreadAtATimeHoldsALock) {
  TShared Shared;
  HANDLE Threads[4] = {};
  for (HANDLE &Thread : Threads)
    Thread = CreateThread(nullptr, 0, TShared::Run, &Shared, 0, nullptr);
  EXPECT_EQ(WaitForMultipleObjects(4, Threads, TRUE, 20'000), WAIT_OBJECT_0);
  for (const HANDLE Thread : Threads)
    CloseHandle(Thread);
  EXPECT_FALSE(Shared.Overlapped);
  EXPECT_EQ(Shared.Rounds, 400);
}

} // namespace
} // namespace hivesweep
