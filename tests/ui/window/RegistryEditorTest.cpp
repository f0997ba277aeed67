// The system's own registry editor, opened at a key.
#include <gtest/gtest.h>

#include <algorithm>

#include "platform/Text.h"
#include "tests/controls/User.h"
#include "tests/ui/window/OtherWindows.h"
#include "tests/ui/window/TestWindow.h"
#include "ui/RegistryEditor.h"

namespace hivesweep {
namespace {

constexpr std::u16string_view EditorClass = u"RegEdit_RegEdit";
constexpr std::u16string_view TestKey = u"HKEY_CURRENT_USER\\Software\\Hivesweep editor test";

class TRegistryEditorTest : public testing::Test {
public:
  TRegistryEditorTest() {
    for (const char16_t *Name : {u"One\\Deep", u"Two"})
      User()->Create(u"Software\\Hivesweep editor test\\" + std::u16string(Name));
  }
  ~TRegistryEditorTest() override {
    CloseAll(EditorClass);
    User()->DeleteTree(u"Software\\Hivesweep editor test");
  }

protected:
  std::unique_ptr<TRegKey> User() {
    return Platform_.Registry->Open(TRegRoot::CurrentUser, u"", TRegAccess::Full).Key;
  }

  void Open(std::u16string_view Below) {
    EXPECT_TRUE(OpenInRegistryEditor(Platform_, std::u16string(TestKey).append(Below)));
  }

  // An editor comes to show that key: its status bar has the computer and the path.
  static bool Shows(std::u16string_view Below) {
    const std::u16string Path = std::u16string(TestKey).append(Below);
    return WaitUntil([&] {
      const std::vector<HWND> Editors = FindVisibleWindows(EditorClass);
      return std::any_of(Editors.begin(), Editors.end(), [&](HWND Editor) {
        const std::u16string Text = TextOf(FindChild(Editor, u"msctls_statusbar32"));
        return Text.ends_with(Path) && Text != Path;
      });
    });
  }

  TPlatform Platform_ = WindowPlatform();
};

TEST_F(TRegistryEditorTest, OpensAtTheKeyAlsoWhileAnEditorRuns) {
  Open(u"\\One\\Deep");
  EXPECT_TRUE(Shows(u"\\One\\Deep"));
  Open(u"\\Two");
  EXPECT_TRUE(Shows(u"\\Two")) << "the editor that ran kept the other from opening there";
}

TEST_F(TRegistryEditorTest, OpensAboveAKeyThatIsGone) {
  Open(u"\\One\\Gone\\Deep");
  EXPECT_TRUE(Shows(u"\\One"));
}

TEST_F(TRegistryEditorTest, LeavesAnEditorAloneThatShowsADialog) {
  Open(u"\\One");
  ASSERT_TRUE(Shows(u"\\One"));
  const HWND Editor = FindVisibleWindows(EditorClass).front();
  EnableWindow(Editor, FALSE); // as while it shows one
  Open(u"\\Two");
  EXPECT_TRUE(IsWindow(Editor)) << "what the user was at is lost";
  EnableWindow(Editor, TRUE);
  EXPECT_TRUE(Shows(u"\\One"));
}

} // namespace
} // namespace hivesweep
