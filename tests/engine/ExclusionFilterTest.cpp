#include <gtest/gtest.h>

#include <random>

#include "engine/ExclusionFilter.h"
#include "engine/SafeLists.h"
#include "platform/DiskFile.h"
#include "repair/AppFrame.h"
#include "tests/engine/LiteralWalk.h"
#include "tests/engine/TestScan.h"

namespace hivesweep {
namespace {

class TFilterTest : public testing::Test {
protected:
  TExclusionFilter Filter(bool IsWow64 = false) {
    TIniSection Pairs;
    EXPECT_EQ(Platform_.Profiles->ReadSection(Paths_.MainIniPath, u"Registry", Pairs), TError());
    return {Pairs, Ignored_, IsWow64};
  }
  void Write(const std::u16string &Path, std::string_view Text) {
    ASSERT_EQ(WriteWholeFile(Path, Text), TError());
  }

  const TScratchFolder Folder_;
  const TDataPaths Paths_ = DataPathsIn(Folder_.Path());
  TPlatform Platform_ = MakeLocalServices();
  TIgnoreFile Ignored_{*Platform_.Profiles, Paths_.IgnoreIniPath};
};

std::u16string Rule(const std::optional<TProtection> &Protection) {
  return Protection ? Protection->RuleText() : u"";
}

TEST_F(TFilterTest, HoldsBackByTheFirstRuleThatHits) {
  static const struct {
    const char *Why;
    std::u16string_view Key, Name, Data, Rule;
    bool Wow64 = false;
  } Cases[] = {
      {"an area of the registry", u"HKEY_CURRENT_USER\\Console\\Foo", u"x", u"",
       u"KeyPrefixes: hkey_current_user\\console"},
      {"a longer name that begins so", u"HKEY_CURRENT_USER\\Console2", u"x", u"",
       u"KeyPrefixes: hkey_current_user\\console"},
      {"not only at the front", u"HKEY_USERS\\S-1-5-18\\x", u"", u"",
       u"KeyPrefixes: hkey_users\\s-1-5-18"},
      {"a kind of file in the data", u"HKEY_X\\k", u"x", u"C:\\Setup\\package.MSI",
       u"DataWords: .msi"},
      {"a word in the value's name", u"HKEY_X\\k", u"Norton", u"", u"AnyFieldWords: norton"},
      {"a word in the data", u"HKEY_X\\k", u"N/A", u"C:\\Citrix\\a", u"AnyFieldWords: citrix"},
      {"a part of the key", u"HKEY_LOCAL_MACHINE\\Software\\Corel2", u"", u"",
       u"AnyFieldWords: corel"},
      {"a part of the key alone", u"HKEY_CLASSES_ROOT\\.LNK", u"", u"", u"KeyFragments: \\.lnk"},
      {"words before fragments before prefixes", u"HKEY_CLASSES_ROOT\\Installer\\*\\office", u"",
       u"a.msi", u"AnyFieldWords: office"},
      {"the earlier word, wherever it stands", u"HKEY_X\\brother", u"x", u"Outlook Express",
       u"AnyFieldWords: outlook express"},
      {"data before key", u"HKEY_CLASSES_ROOT\\.lnk", u"", u"a.cab", u"DataWords: .cab"},
      {"an entry that ends in a blank protects nothing",
       u"hkey_local_machine\\software\\policies\\x", u"", u"", u""},
      {"the system folder of a 32-bit system", u"HKEY_X\\k", u"", u"C:\\Windows\\System32\\x.dll",
       u""},
      {"and of a 64-bit one", u"HKEY_X\\k", u"", u"C:\\Windows\\System32\\x.dll",
       u"AnyFieldWords: \\system32", true},
      {"a letter beyond ASCII is not folded", u"HKEY_X\\\u212Aaspersky", u"", u"", u""},
      {"nothing", u"HKEY_X\\k", u"", u"", u""},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(ToUtf8(Rule(Filter(C.Wow64).Check(C.Key, C.Name, C.Data))), ToUtf8(C.Rule)) << C.Why;
}

TEST_F(TFilterTest, HoldsBackExactPairs) {
  Write(Paths_.MainIniPath, "[Registry]\r\nHKEY_X\\Key\\=name\r\nHKEY_X\\Key\\=other\r\n"
                            "HKEY_X\\a=b=c\r\nno separator\r\nHKEY_X\\Empty=\r\n");
  const TExclusionFilter Pairs = Filter();
  EXPECT_EQ(Pairs.ExactPairs.size(), 5u) << "every line, doubles of a key too";
  static const struct {
    const char *Why;
    std::u16string_view Key, Name, Rule;
  } Cases[] = {
      {"pair", u"HKEY_X\\Key\\", u"name", u"ExactPairs: HKEY_X\\Key\\=name"},
      {"second line of the key", u"HKEY_X\\Key\\", u"other", u"ExactPairs: HKEY_X\\Key\\=other"},
      {"another letter case of the key", u"HKEY_X\\key\\", u"name", u""},
      {"another letter case of the name", u"HKEY_X\\Key\\", u"Name", u""},
      {"the first separator counts", u"HKEY_X\\a", u"b=c", u"ExactPairs: HKEY_X\\a=b=c"},
      {"and no other", u"HKEY_X\\a=b", u"c", u""},
      {"the default value", u"HKEY_X\\Empty", u"", u"ExactPairs: HKEY_X\\Empty="},
      {"a line without one", u"no separator", u"", u""},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(ToUtf8(Rule(Pairs.Check(C.Key, C.Name, u""))), ToUtf8(C.Rule)) << C.Why;
}

TEST_F(TFilterTest, SeesEveryChangeOfTheIgnoreFile) {
  const TExclusionFilter Ignoring = Filter();
  const auto IsIgnored = [&](std::u16string_view Key) {
    return Ignoring.Check(Key, u"any", u"").has_value();
  };
  EXPECT_FALSE(IsIgnored(u"HKEY_X\\Aa"));
  // Changes of the same size, one right after the other: no file time tells them
  // apart.
  for (int Round = 0; Round < 20; ++Round) {
    Write(Paths_.IgnoreIniPath, "[Registry]\r\nHKEY_X\\Aa=v\r\n");
    EXPECT_TRUE(IsIgnored(u"HKEY_X\\Aa"));
    EXPECT_FALSE(IsIgnored(u"HKEY_X\\aa")) << "letter case counts";
    Write(Paths_.IgnoreIniPath, "[Registry]\r\nHKEY_X\\Bb=v\r\n");
    EXPECT_FALSE(IsIgnored(u"HKEY_X\\Aa"));
    EXPECT_TRUE(IsIgnored(u"HKEY_X\\Bb"));
  }
  // An old file is read once, and still a change is seen.
  SetAge(Paths_.IgnoreIniPath, 3600);
  EXPECT_TRUE(IsIgnored(u"HKEY_X\\Bb"));
  EXPECT_TRUE(IsIgnored(u"HKEY_X\\Bb"));
  Write(Paths_.IgnoreIniPath, "[Registry]\r\n");
  EXPECT_FALSE(IsIgnored(u"HKEY_X\\Bb"));
}

TEST_F(TFilterTest, AgreesWithTheWalkAlongTheLists) {
  const TExclusionFilter Fast = Filter(true);
  TMixedTexts Texts(Fast, 20091107);
  for (int Round = 0; Round < 2000; ++Round) {
    const auto [Key, Name, Data] = Texts.Next();
    ASSERT_EQ(ToUtf8(Rule(Fast.Check(Key, Name, Data))),
              ToUtf8(Rule(WalkLiterally(Fast, Key, Name, Data))))
        << ToUtf8(Key) << " | " << ToUtf8(Name) << " | " << ToUtf8(Data);
  }
}

// Blanks at the end, doubles, capitals and the order count: a sum over each entry's place
// sees a change of any of them.
TEST(SafeLists, KeepTheirOddities) {
  static const struct {
    const char *Name;
    std::span<const std::u16string_view> Entries;
    std::size_t Size;
    std::uint32_t Print;
  } Lists[] = {
      {"AnyFieldWords", BuiltInAnyFieldWords(), 49, 3821153181u},
      {"DataWords", BuiltInDataWords(), 79, 242684655u},
      {"KeyFragments", BuiltInKeyFragments(), 133, 243575292u},
      {"KeyPrefixes", BuiltInKeyPrefixes(), 176, 519816520u},
      {"ScannedAreaKeys", BuiltInScannedAreaKeys(), 23, 2317429781u},
  };
  for (const auto &List : Lists) {
    std::uint32_t Print = 2166136261u;
    for (const std::u16string_view Entry : List.Entries)
      for (const char16_t Unit : std::u16string(Entry) + u'\n')
        Print = (Print ^ Unit) * 16777619u;
    EXPECT_EQ(List.Entries.size(), List.Size) << List.Name;
    EXPECT_EQ(Print, List.Print) << List.Name;
  }
}

} // namespace
} // namespace hivesweep
