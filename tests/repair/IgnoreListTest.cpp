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
      {"all of a comment", u";HKEY_CURRENT_USER\\a", false},
      {"a section's header", u"[HKEY_CURRENT_USER\\a,b]", false},
      {"nothing", u"", false},
  };
  TPlatform Platform = MakeLocalServices();
  for (const bool Existing : {false, true}) {
    const TScratchFolder Folder;
    const std::u16string Path = Folder.File(u"Ignore.ini");
    if (Existing) {
      ASSERT_EQ(WriteWholeFile(Path, "; mine\r\n[Registry]\r\nHKEY_USERS\\old=1\r\n"), TError());
    }
    TIgnoreList List(Platform, Path);
    for (const auto &C : Cases) {
      std::string Before, After;
      ReadWholeFile(Path, Before);
      const TError Error = List.Add(C.Key, u"N/A");
      ReadWholeFile(Path, After);
      EXPECT_EQ(List.Contains(C.Key), !Error) << C.Why;
      // The letters of a file in the code page are those of the code page.
      const bool ByCodePage = Existing && C.Key.find(u'\u0416') != std::u16string_view::npos;
      EXPECT_EQ(!Error, ByCodePage ? !Error : C.Fits) << C.Why << ToUtf8(EnglishWords(Error));
      EXPECT_EQ(After == Before, bool(Error)) << C.Why;
    }
    EXPECT_EQ(List.Contains(u"HKEY_USERS\\old"), Existing);
    EXPECT_FALSE(List.Contains(u"hkey_current_user\\software\\x")) << "letter case counts";
  }
}

TEST(IgnoreList, HasEachKeyOnceAndShowsIt) {
  const TScratchFolder Folder;
  TPlatform Platform = MakeLocalServices();
  TIgnoreList List(Platform, Folder.File(u"Ignore.ini"));
  TTestRows Rows;
  Rows.Rows = {u"rubbish"};
  List.Fill(Rows);
  EXPECT_TRUE(Rows.Rows.empty());
  EXPECT_EQ(List.Remove(u"HKEY_USERS\\none"), TError()) << "what is not there is removed";
  ASSERT_EQ(List.Add(u"HKEY_USERS\\a", u"first"), TError());
  SetReadOnly(Folder.File(u"Ignore.ini"), true);
  ASSERT_EQ(List.Add(u"HKEY_USERS\\a", u"second"), TError());
  ASSERT_EQ(List.Add(u"HKEY_USERS\\b", u"N/A"), TError());
  List.Fill(Rows);
  EXPECT_EQ(Rows.Rows,
            (std::vector<std::u16string>{u"HKEY_USERS\\a|second", u"HKEY_USERS\\b|N/A"}));
  SetReadOnly(Folder.File(u"Ignore.ini"), true);
  EXPECT_EQ(List.Remove(u"HKEY_USERS\\a"), TError());
  EXPECT_FALSE(List.Contains(u"HKEY_USERS\\a"));
}

} // namespace
} // namespace hivesweep
