#include <gtest/gtest.h>

#include "platform/Console.h"
#include "platform/DiskFile.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

// What was added is found again, or the add has said that it can't be.
TEST(IgnoreList, FindsAgainWhatItTook) {
  static const struct {
    const char *Why;
    std::u16string_view Key;
    TErrorCode Refused = TErrorCode::None;
  } Cases[] = {
      {"plain", u"HKEY_CURRENT_USER\\Software\\x"},
      {"letters beyond any code page", u"HKEY_CURRENT_USER\\\u0416\u65E5\u00E4"},
      {"a comment's sign inside", u"HKEY_CURRENT_USER\\a;b"},
      {"brackets", u"HKEY_CURRENT_USER\\[a]b]"},
      {"blanks inside", u"HKEY_CURRENT_USER\\a  b"},
      {"quotes", u"HKEY_CURRENT_USER\\\"a\""},
      {"an equals sign", u"HKEY_CURRENT_USER\\a=b", TErrorCode::KeyWithEquals},
      {"a trailing blank", u"HKEY_CURRENT_USER\\a ", TErrorCode::KeyWithOuterBlanks},
      {"a leading blank", u" HKEY_CURRENT_USER\\a", TErrorCode::KeyWithOuterBlanks},
      {"a line break", u"HKEY_CURRENT_USER\\a\nb", TErrorCode::KeyWithBreak},
      {"all of a comment", u";HKEY_CURRENT_USER\\a", TErrorCode::KeyLikeComment},
      {"a section's header", u"[HKEY_CURRENT_USER\\a,b]", TErrorCode::KeyLikeSection},
      {"nothing", u"", TErrorCode::KeyEmpty},
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
      if (!ByCodePage) {
        EXPECT_EQ(Error.Code, C.Refused) << C.Why << ": " << ToUtf8(EnglishWords(Error));
      }
      EXPECT_EQ(After == Before, bool(Error)) << C.Why;
    }
    EXPECT_EQ(List.Contains(u"HKEY_USERS\\old"), Existing);
    EXPECT_FALSE(List.Contains(u"hkey_current_user\\software\\x")) << "letter case counts";
  }
}

TEST(IgnoreList, KeepsAValuesNameAsItWasGiven) {
  TPlatform Platform = MakeLocalServices();
  const TScratchFolder Folder;
  TIgnoreList List(Platform, Folder.File(u"Ignore.ini"));
  for (const std::u16string_view Name :
       {u"", u"  blanks ", u"\t", u"\"quoted\"", u"'quoted'", u"\" \"", u"\"\"", u"\"", u"\"one",
        u"a=b", u";x", u"[x]", u"\u0416"}) {
    EXPECT_EQ(List.Add(u"HKEY_USERS\\k", Name), TError()) << ToUtf8(Name);
    TTestRows Rows;
    List.Fill(Rows);
    EXPECT_EQ(Rows.Rows.back(), u"HKEY_USERS\\k|" + std::u16string(Name));
  }
  // In a code page the letter would become another one.
  ASSERT_EQ(WriteWholeFile(Folder.File(u"Ignore.ini"), "[Registry]\r\n\xE4=1\r\n"), TError());
  EXPECT_EQ(List.Add(u"HKEY_USERS\\k", u"\u0416").Code, TErrorCode::KeyLostInList);
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

TEST(IgnoreList, ALongOneIsReadOnceAndNotForEachKey) {
  const TScratchFolder Folder;
  TPlatform Platform = MakeLocalServices();
  std::string Bytes = "[Registry]\r\n";
  for (int Key = 0; Key < 10'000; ++Key)
    Bytes += "HKEY_USERS\\" + std::to_string(Key) + " = \" v\"\r\n";
  ASSERT_EQ(WriteWholeFile(Folder.File(u"Ignore.ini"), Bytes + "hkey_users\\1=w\r\n"), TError());
  TTestRows Rows;
  const std::uint64_t Before = MillisecondTicks();
  TIgnoreList(Platform, Folder.File(u"Ignore.ini")).Fill(Rows);
  EXPECT_LT(MillisecondTicks() - Before, 10'000u);
  ASSERT_EQ(Rows.Rows.size(), 10'001u);
  EXPECT_EQ(Rows.Rows.back(), u"hkey_users\\1| v") << "the first line of a name counts";
}

} // namespace
} // namespace hivesweep
