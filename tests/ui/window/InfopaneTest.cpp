// About box, home page and manual, with the shipped library and without it.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Text.h"
#include "tests/controls/User.h"
#include "tests/ui/window/OtherWindows.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/Infopane.h"

namespace hivesweep {
namespace {

std::u16string Shipped() {
  std::u16string Folder = SHIPPED_FOLDER;
  for (char16_t &Unit : Folder)
    Unit = Unit == u'/' ? u'\\' : Unit;
  return Folder;
}

class TInfopaneTest : public testing::Test {
protected:
  TInfopaneTest() { Above_.Show(); }

  void PlaceProgramIn(std::u16string_view Folder) {
    Bench_.Platform.Folders = std::make_unique<TFoldersWithProgram>(
        std::move(Bench_.Platform.Folders), std::u16string(Folder));
  }

  TTestBench Bench_;
  TLook Look_;
  TForm Above_{Look_, nullptr, {.Name = u"Above", .Caption = u"Above", .Size = {600, 400}}, {}};
};

// What the next dialog of this process shows, line by line; then it is closed as by the key.
class TDialogReader {
public:
  explicit TDialogReader(int Key) {
    Key_ = static_cast<WPARAM>(Key);
    Lines_.clear();
    Timer_ = SetTimer(nullptr, 0, 10, Read);
  }
  TDialogReader(const TDialogReader &) = delete;
  TDialogReader &operator=(const TDialogReader &) = delete;
  ~TDialogReader() { KillTimer(nullptr, Timer_); }

  static const std::vector<std::u16string> &Lines() { return Lines_; }
  static bool Centered() { return Centered_; }

private:
  static BOOL CALLBACK AddLine(HWND Window, LPARAM) {
    Lines_.push_back(TextOf(Window));
    return TRUE;
  }
  static void CALLBACK Read(HWND, UINT, UINT_PTR, DWORD) {
    const std::vector<HWND> Dialogs = FindVisibleWindows(u"#32770", GetCurrentProcessId());
    if (Dialogs.empty())
      return;
    KillTimer(nullptr, Timer_);
    const HWND Dialog = Dialogs.front();
    Lines_.push_back(TextOf(Dialog));
    EnumChildWindows(Dialog, AddLine, 0);
    RECT Own, Over;
    GetWindowRect(Dialog, &Own);
    GetWindowRect(GetWindow(Dialog, GW_OWNER), &Over);
    Centered_ = std::abs(Own.left + Own.right - Over.left - Over.right) <= 1 &&
                std::abs(Own.top + Own.bottom - Over.top - Over.bottom) <= 1;
    PostMessageW(Dialog, WM_KEYDOWN, Key_, 1);
  }

  inline static std::vector<std::u16string> Lines_;
  inline static bool Centered_ = false;
  inline static WPARAM Key_ = 0;
  inline static UINT_PTR Timer_ = 0;
};

TEST_F(TInfopaneTest, AboutBoxTellsTheVersionAndClosesByItsKeys) {
  PlaceProgramIn(Shipped());
  for (const int Key : {VK_RETURN, VK_ESCAPE}) {
    const TDialogReader Reader(Key);
    ShowAbout(Above_, Bench_);
    const std::vector<std::u16string> &Lines = TDialogReader::Lines();
    ASSERT_GT(Lines.size(), 4u);
    EXPECT_EQ(ToUtf8(Lines.front()), "About Hivesweep");
    const std::u16string Version =
        u"Version " VERSION u" (" + std::u16string(sizeof(void *) == 4 ? u"32" : u"64") + u"-bit)";
    EXPECT_TRUE(std::any_of(Lines.begin(), Lines.end(),
                            [&](const std::u16string &Line) { return Line.starts_with(Version); }));
    EXPECT_TRUE(TDialogReader::Centered());
    EXPECT_TRUE(IsWindowEnabled(Above_.Handle()));
    EXPECT_FALSE(GetModuleHandleW(L"Infopane.dll")) << "the library is still loaded";
  }
}

TEST_F(TInfopaneTest, AboutBoxSpeaksTheLanguageOfTheProgram) {
  TTestBench Bench({}, WindowPlatform(Shipped()));
  static const struct {
    const char16_t *Language;
    const char16_t *Caption;
  } Cases[] = {{u"German", u"Info \u00fcber Hivesweep"}, {u"English", u"About Hivesweep"}};
  for (const auto &C : Cases) {
    Bench.Language.SetLanguage(C.Language);
    const LCID Before = GetThreadLocale();
    const TDialogReader Reader(VK_ESCAPE);
    ShowAbout(Above_, Bench);
    ASSERT_FALSE(TDialogReader::Lines().empty());
    EXPECT_EQ(TDialogReader::Lines().front(), C.Caption);
    EXPECT_EQ(GetThreadLocale(), Before);
  }
}

TEST_F(TInfopaneTest, LibraryExportsItsFunctionsByTheirBareNames) {
  const HMODULE Library = LoadLibraryW(Wide(Shipped() + u"Infopane.dll"));
  ASSERT_TRUE(Library);
  for (const char *Name : {"ShowAbout", "NavigateToHomePage"})
    EXPECT_TRUE(GetProcAddress(Library, Name)) << Name;
  FreeLibrary(Library);
}

TEST_F(TInfopaneTest, WithoutTheLibraryAMessageTellsTheVersion) {
  PlaceProgramIn(u"C:\\windows\\"); // no library there
  const TBoxAnswer Answer(IDOK);
  ShowAbout(Above_, Bench_);
  EXPECT_TRUE(Answer.Text().ends_with(u"Version " VERSION u".")) << ToUtf8(Answer.Text());
}

TEST_F(TInfopaneTest, WithoutTheLibraryTheHomePageIsTheManualAndAMissingOneIsTold) {
  PlaceProgramIn(u"C:\\windows\\");
  static const struct {
    const char *Why;
    void (*Command)(const TForm &, TWorkbench &);
  } Cases[] = {{"home page", NavigateToHomePage}, {"help", OpenManual}};
  for (const auto &C : Cases) {
    const TBoxAnswer Answer(IDOK);
    C.Command(Above_, Bench_); // with the system's own shell
    EXPECT_EQ(ToUtf8(Answer.Text()), "The manual could not be opened.") << C.Why;
  }
}

// While it lives, pages of the web are opened by copying them, so that it can be seen
// which one it was.
class TPageCopier {
public:
  explicit TPageCopier(TPlatform &Platform)
      : Platform_(Platform), Copy_(Platform.Folders->Temp() + u"opened.html") {
    EXPECT_FALSE(Platform.Storage->Remove(Copy_));
    const std::unique_ptr<TRegKey> Classes = Root();
    const TRegOpened Extension = Classes->Create(u".html");
    Extension.Key->Read(u"", Before_);
    Set(*Extension.Key, u"HivesweepTestPage");
    Set(*Classes->Create(u"HivesweepTestPage\\shell\\open\\command").Key,
        u"cmd.exe /c copy \"%1\" \"" + Copy_ + u"\"");
  }
  TPageCopier(const TPageCopier &) = delete;
  TPageCopier &operator=(const TPageCopier &) = delete;
  ~TPageCopier() {
    const std::unique_ptr<TRegKey> Classes = Root();
    Classes->DeleteTree(u"HivesweepTestPage");
    if (Before_.Data().Type() == TRegType::None)
      Classes->DeleteTree(u".html");
    else
      Classes->Create(u".html").Key->SetValue(u"", Before_.Data().Type(), Before_.Data().Bytes());
  }

  // The page that is opened meanwhile has these bytes.
  bool Opens(const std::string &Bytes) const {
    return WaitUntil([&] {
      std::string Copied;
      return !Platform_.Storage->Read(Copy_, Copied) && Copied == Bytes;
    });
  }

private:
  std::unique_ptr<TRegKey> Root() const {
    return Platform_.Registry->Open(TRegRoot::ClassesRoot, u"", TRegAccess::Full).Key;
  }
  static void Set(TRegKey &Key, const std::u16string &Text) {
    EXPECT_EQ(Key.SetValue(u"", TRegType::String,
                           std::as_bytes(std::span(Text.c_str(), Text.size() + 1))),
              TRegStatus::Ok);
  }

  TPlatform &Platform_;
  const std::u16string Copy_;
  TRegValue Before_;
};

TEST_F(TInfopaneTest, LibraryTellsOfAPageThatIsMissing) {
  const std::u16string Folder = Bench_.Platform.Folders->Temp();
  ASSERT_TRUE(CopyFileW(Wide(Shipped() + u"Infopane.dll"), Wide(Folder + u"Infopane.dll"), FALSE));
  PlaceProgramIn(Folder);
  const TBoxAnswer Answer(IDOK);
  NavigateToHomePage(Above_, Bench_);
  EXPECT_EQ(ToUtf8(Answer.Text()),
            ToUtf8(u"The page could not be opened:\n" + Folder + u"Manual.html"));
  EXPECT_TRUE(DeleteFileW(Wide(Folder + u"Infopane.dll"))) << "the library is still loaded";
}

TEST_F(TInfopaneTest, HomePageAndManualAreThePageThatIsShipped) {
  PlaceProgramIn(Shipped());
  std::string Page;
  ASSERT_FALSE(Bench_.Platform.Storage->Read(Shipped() + u"Manual.html", Page));
  for (const auto Command : {NavigateToHomePage, OpenManual}) {
    const TPageCopier Copier(Bench_.Platform);
    Command(Above_, Bench_);
    EXPECT_TRUE(Copier.Opens(Page));
  }
}

} // namespace
} // namespace hivesweep
