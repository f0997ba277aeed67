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

// The program lies in a folder of the test's choice.
class TFoldersWithProgram final : public TFolders {
public:
  TFoldersWithProgram(std::unique_ptr<TFolders> Real, std::u16string_view Program)
      : Real_(std::move(Real)), Program_(Program) {}
  std::u16string Special(TSpecialFolder Folder) override { return Real_->Special(Folder); }
  std::u16string Windows() override { return Real_->Windows(); }
  std::u16string Temp() override { return Real_->Temp(); }
  std::u16string Program() override { return Program_; }

private:
  std::unique_ptr<TFolders> Real_;
  std::u16string Program_;
};

// Notes what it is to open, and has nothing that opens it.
class TNotingShell final : public TShell {
public:
  explicit TNotingShell(std::u16string &Opened) : Opened_(Opened) {}
  bool Open(std::u16string_view Target, std::u16string_view) override {
    Opened_ = Target;
    return false;
  }
  std::unique_ptr<TProcess> Start(std::u16string_view, std::u16string_view) override {
    return nullptr;
  }
  std::optional<std::u16string> ShortcutTarget(std::u16string_view) override {
    return std::nullopt;
  }

private:
  std::u16string &Opened_;
};

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
    Bench_.Platform.Folders =
        std::make_unique<TFoldersWithProgram>(std::move(Bench_.Platform.Folders), Folder);
  }

  TTestBench Bench_;
  TLook Look_;
  TForm Above_{Look_, nullptr, {.Name = u"Above", .Caption = u"Above", .Size = {600, 400}}, {}};
};

// What the next dialog of this process shows, line by line; then it is closed as by the key.
class TDialogReader {
public:
  explicit TDialogReader(WPARAM Button) {
    Button_ = Button;
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
    PostMessageW(Dialog, WM_KEYDOWN, Button_, 1);
  }

  inline static std::vector<std::u16string> Lines_;
  inline static bool Centered_ = false;
  inline static WPARAM Button_ = 0;
  inline static UINT_PTR Timer_ = 0;
};

TEST_F(TInfopaneTest, AboutBoxTellsTheVersionAndClosesByItsKeys) {
  PlaceProgramIn(Shipped());
  for (const WPARAM Key : {VK_RETURN, VK_ESCAPE}) {
    const TDialogReader Reader(Key);
    ShowAbout(Above_, Bench_);
    const std::vector<std::u16string> &Lines = TDialogReader::Lines();
    ASSERT_GT(Lines.size(), 4u);
    EXPECT_EQ(ToUtf8(Lines.front()), "About Hivesweep");
    const std::u16string Version =
        u"Version " VERSION u" (" + ToDecimal(sizeof(void *) * 8) + u"-bit)";
    EXPECT_TRUE(std::any_of(Lines.begin(), Lines.end(),
                            [&](const std::u16string &Line) { return Line.starts_with(Version); }));
    EXPECT_TRUE(TDialogReader::Centered());
    EXPECT_TRUE(IsWindowEnabled(Above_.Handle()));
    EXPECT_FALSE(GetModuleHandleW(L"Infopane.dll")) << "the library is still loaded";
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

TEST_F(TInfopaneTest, ManualIsTheFileBesideTheProgram) {
  PlaceProgramIn(Shipped());
  std::u16string Opened;
  Bench_.Platform.Shell = std::make_unique<TNotingShell>(Opened);
  const TBoxAnswer Answer(IDOK);
  OpenManual(Above_, Bench_);
  EXPECT_EQ(Bench_.Platform.Files->Look(Opened), TPathState::File) << ToUtf8(Opened);
}

} // namespace
} // namespace hivesweep
