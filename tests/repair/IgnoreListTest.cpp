#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

// What was added is found again, or the add has said that it can't be.
TEST(IgnoreList, FindsAgainWhatItTook) {
  static const struct {
    const char *Why;
    std::u16string_view Key;
    bool Fits;
  } Cases[] = {
      {"plain", u"HKEY_CURRENT_USER\\Software\\x", true},
      {"letters beyond any code page", u"HKEY_CURRENT_USER\\\u0416\u65E5\u00E4", true},
      {"a comment's sign inside", u"HKEY_CURRENT_USER\\a;b", true},
      {"brackets", u"HKEY_CURRENT_USER\\[a]b]", true},
      {"blanks inside", u"HKEY_CURRENT_USER\\a  b", true},
      {"quotes", u"HKEY_CURRENT_USER\\\"a\"", true},
      {"an equals sign", u"HKEY_CURRENT_USER\\a=b", false},
      {"a trailing blank", u"HKEY_CURRENT_USER\\a ", false},
      {"a leading blank", u" HKEY_CURRENT_USER\\a", false},
      {"a line break", u"HKEY_CURRENT_USER\\a\nb", false},
      {"nothing", u"", false},
  };
  TPlatform Platform = MakeLocalServices();
  for (const bool Existing : {false, true}) {
    const TScratchFolder Folder;
    const std::u16string Path = Folder.File(u"Ignore.ini");
    if (Existing) {
      ASSERT_EQ(WriteWholeFile(Path, "; mine\r\n[Registry]\r\nHKEY_USERS\\old=1\r\n"), u"");
    }
    TIgnoreList List(Platform, Path);
    for (const auto &C : Cases) {
      std::string Before, After;
      ReadWholeFile(Path, Before);
      const TDiskError Error = List.Add(C.Key, u"N/A");
      ReadWholeFile(Path, After);
      EXPECT_EQ(List.Contains(C.Key), Error.empty()) << C.Why;
      // The letters of a file in the code page are those of the code page.
      const bool ByCodePage = Existing && C.Key.find(u'\u0416') != std::u16string_view::npos;
      EXPECT_EQ(Error.empty(), ByCodePage ? Error.empty() : C.Fits) << C.Why << ToUtf8(Error);
      EXPECT_EQ(After == Before, !Error.empty()) << C.Why;
    }
    EXPECT_EQ(List.Contains(u"HKEY_USERS\\old"), Existing);
    EXPECT_FALSE(List.Contains(u"hkey_current_user\\software\\x")) << "letter case counts";
  }
}

TEST(IgnoreList, HasEachKeyOnceAndShowsIt) {
  class TRows final : public TListRows {
  public:
    void Clear() override { Text.clear(); }
    void Add(std::u16string_view Caption, std::span<const std::u16string> SubItems) override {
      Text += std::u16string(Caption) + u"|" + SubItems[0] + u"\n";
    }
    std::u16string Text = u"rubbish";
  };
  const TScratchFolder Folder;
  TPlatform Platform = MakeLocalServices();
  TIgnoreList List(Platform, Folder.File(u"Ignore.ini"));
  TRows Rows;
  List.Fill(Rows);
  EXPECT_EQ(Rows.Text, u"");
  EXPECT_EQ(List.Remove(u"HKEY_USERS\\none"), u"") << "what is not there is removed";
  ASSERT_EQ(List.Add(u"HKEY_USERS\\a", u"first"), u"");
  SetReadOnly(Folder.File(u"Ignore.ini"), true);
  ASSERT_EQ(List.Add(u"HKEY_USERS\\a", u"second"), u"");
  ASSERT_EQ(List.Add(u"HKEY_USERS\\b", u"N/A"), u"");
  List.Fill(Rows);
  EXPECT_EQ(Rows.Text, u"HKEY_USERS\\a|second\nHKEY_USERS\\b|N/A\n");
  SetReadOnly(Folder.File(u"Ignore.ini"), true);
  EXPECT_EQ(List.Remove(u"HKEY_USERS\\a"), u"");
  EXPECT_FALSE(List.Contains(u"HKEY_USERS\\a"));
}

// Files that are no settings files: nothing is lost, and what can't be done is said.
TEST(IgnoreList, SurvivesHostileFiles) {
  std::string Large = "[Registry]\r\n";
  while (Large.size() < 1'000'000)
    Large += "HKEY_USERS\\" + std::to_string(Large.size()) + "=1\r\n";
  static const struct {
    const char *Why;
    std::string Bytes;
  } Cases[] = {{"empty", ""},
               {"binary", std::string("\0\x01\xFF[Reg\0istry]\r\0\n", 16)},
               {"half a mark", "\xFF"},
               {"large", Large}};
  TPlatform Platform = MakeLocalServices();
  for (const auto &C : Cases) {
    const TScratchFolder Folder;
    const std::u16string Path = Folder.File(u"Ignore.ini");
    ASSERT_EQ(WriteWholeFile(Path, C.Bytes), u"");
    TIgnoreList List(Platform, Path);
    const TDiskError Error = List.Add(u"HKEY_USERS\\a", u"v");
    EXPECT_EQ(List.Contains(u"HKEY_USERS\\a"), Error.empty()) << C.Why << ToUtf8(Error);
  }
  const TScratchFolder Folder;
  ASSERT_EQ(Platform.Storage->CreateFolder(Folder.File(u"Ignore.ini")), u"");
  TIgnoreList List(Platform, Folder.File(u"Ignore.ini"));
  EXPECT_NE(List.Add(u"HKEY_USERS\\a", u"v"), u"") << "a folder";
  EXPECT_NE(List.Remove(u"HKEY_USERS\\a"), u"");
}

} // namespace
} // namespace hivesweep
