// What a registry editor may do with a text, held against a real one where there is one.
#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "repair/BackupText.h"
#include "repair/EditorText.h"
#include "tests/repair/TestRepair.h"

namespace hivesweep {
namespace {

constexpr std::u16string_view Header = u"Windows Registry Editor Version 5.00\r\n\r\n";

// Every "~" in Lines stands for the test's own key, as Root spells its root.
std::u16string Filled(std::u16string_view Lines, const std::u16string &Own,
                      std::u16string_view Root) {
  std::u16string Out(Header);
  for (const char16_t Unit : Lines)
    Out += Unit == u'~' ? std::u16string(Root) + u"\\" + Own : std::u16string(1, Unit);
  return Out;
}

struct TCase {
  const char *Why;
  std::u16string_view Lines;
  bool IsProved = false;
  std::u16string_view Keys = {}; // below the test's own, each behind a blank
  std::u16string_view Root = u"HKEY_CURRENT_USER";
};

const TCase Cases[] = {
    {"what the program writes itself",
     u"[~\\a]\r\n\"v\"=\"x\\\\y\"\r\n@=\"d\"\r\n\"n\"=dword:0000001A\r\n"
     u"[~\\b]\r\n\"h\"=hex:00,01,\\\r02,03\r\n\"C:\\odd\\name\"=\"1\"\r\n",
     true, u" a b"},
    {"a backslash at the end", u"[~\\a\\]\r\n\"v\"=\"1\"\r\n", true, u" a"},
    {"brackets in a name: it may end at each", u"[~\\a]b]\r\n\"v\"=\"1\"\r\n", true, u" a a]b"},
    {"blanks before the bracket", u" \t[~\\a]\r\n\"v\"=\"1\"\r\n", true, u" a"},
    {"a root in small letters", u"[~\\a]\r\n\"v\"=\"1\"\r\n", true, u" a", u"hkey_Current_user"},
    {"an abbreviated root", u"[~\\a]\r\n\"v\"=\"1\"\r\n", true, u" a", u"HKCU"},
    {"bare line feeds", u"[~\\a]\n\"v\"=\"1\"\n[~\\b]\n\"v\"=\"1\"\n", true, u" a b"},
    {"bare carriage returns", u"[~\\a]\r\"v\"=\"1\"\r[~\\b]\r\"v\"=\"1\"\r", true, u" a b"},
    {"a comment", u"; a word\r\n[~\\a] ; and one\r\n\"v\"=\"1\"\r\n", true, u" a"},
    {"a key behind an open list of bytes", u"[~\\a]\r\n\"h\"=hex:00,\\\r[~\\b]\r\n\"v\"=\"1\"\r\n",
     true, u" a b"},
    {"text behind the bracket", u"[~\\a]x\r\n\"v\"=\"1\"\r\n"},
    {"a deleted key", u"[-~\\Foreign]\r\n"},
    {"a deleted key behind blanks", u"  [-~\\Foreign]\r\n"},
    {"a deleted key with blanks inside", u"[ -~\\Foreign]\r\n"},
    {"a deleted value", u"[~\\Foreign]\r\n\"v\"=-\r\n"},
    {"a deleted value with blanks", u"[~\\Foreign]\r\n \"v\" = - ; \r\n"},
    {"a deleted default value", u"[~\\Foreign]\r\n@=-\r\n"},
    {"a deletion that is data to some", u"[~\\a]\r\n\"v\"=\"x\"=-\"\r\n"},
    {"a key in a text over two lines", u"[~\\a]\r\n\"v\"=\"x\r\n[-~\\Foreign]\r\n\"\r\n"},
    {"a key that comes to the front when lines are joined",
     u"[~\\a]\r\n\"v\"=\"x\\\r\n\"[-~\\Foreign]\"=\"1\"\r\n"},
    {"no key at all", u"\"v\"=\"1\"\r\n"},
    {"words", u"[~\\a]\r\nreg delete\r\n"},
    {"another root", u"[HKEY_CURRENT_CONFIG\\x]\r\n"},
    {"a root itself", u"[HKEY_CURRENT_USER]\r\n"},
    {"a part without a name", u"[~\\\\a]\r\n"},
    {"a blank at the end of a key", u"[~\\a ]\r\n"},
    {"a zeroed sector", {u"[~\\a\0\0\0\0]\r\n\"v\"=\"1\"\r\n", 21}},
    {"an end of file in the middle", u"[~\\a]\r\n\x1A[~\\b]\r\n"},
    {"another kind of line end", u"[~\\a]\r\n\"v\"=\"1\"\x2028[-~\\Foreign]\r\n"},
};

TEST(EditorText, ListsEveryKeyOrDoubtsTheText) {
  for (const TCase &C : Cases) {
    for (const bool IsWide : {false, true}) {
      const std::u16string Text = Filled(C.Lines, u"Own", C.Root);
      if (!IsWide && Contains(Text, u'\x2028'))
        continue;
      const TEditorText Read = ReadAsEditor(IsWide ? "\xFF\xFE" + Utf16Bytes(Text) : ToUtf8(Text));
      EXPECT_EQ(Read.DoubtfulLine == 0, C.IsProved) << C.Why;
      std::u16string Keys;
      for (const TKeyPlace &Key : Read.Scope.Keys)
        Keys += u" " + Key.Path.substr(std::min<std::size_t>(Key.Path.size(), 4));
      if (C.IsProved) {
        EXPECT_EQ(Keys, C.Keys) << C.Why;
      }
    }
  }
  for (const char *const Bytes : {"", "text", "\xEF\xBB\xBFWindows Registry Editor Version 5.00",
                                  "REGEDIT\r\nHKEY_CLASSES_ROOT\\x = y", "\xFF\xFEW"})
    EXPECT_EQ(ReadAsEditor(Bytes).DoubtfulLine, 1u) << Bytes;
}

// One pair of key and value for each reading of it.
TEST(EditorText, ReadsDataAsEitherKindOfEditor) {
  const auto Described = [](std::u16string_view Line) {
    std::u16string Out;
    for (const TEditorValue &Value :
         ReadAsEditor(ToUtf8(Filled(u"[~]\r\n", u"k", u"HKCU") + std::u16string(Line))).Values) {
      Out += u"<" + Value.Name + u">" + ToDecimal(static_cast<std::uint32_t>(Value.Value.Type));
      for (const std::byte Byte : Value.Value.Bytes)
        Out += u" " + ToDecimal(std::to_integer<std::uint32_t>(Byte));
    }
    return ToUtf8(Out);
  };
  EXPECT_EQ(Described(u"\"a\"=\"1\"\r\n"), "<a>1 49 0 0 0");
  EXPECT_EQ(Described(u"@=\"\\n\"\r\n"), "<>1 10 0 0 0<>1 110 0 0 0");
  EXPECT_EQ(Described(u"\"x\\y\\r\"=dword:1f\r\n"), "<xy\r>4 31 0 0 0<xyr>4 31 0 0 0");
  EXPECT_EQ(Described(u"\"h\"=hex:0A,ff,\\\r1,\\\r2\r\n"), "<h>3 10 255 1 2");
  EXPECT_EQ(Described(u"\"open\"=\"1\r\n\"q\"=\"a\"b\"\r\n\"d\"=dword:x\r\n"), "");
}

TEST(BackupText, LeavesOutLinesThatAreSeveralToAnEditor) {
  const std::vector<std::byte> Bytes(60, std::byte{1});
  const std::u16string List = BinaryLine(u"list", Bytes);
  const std::u16string Kept[] = {u"[HKEY_USERS\\a]", StringLine(u"b", u"c"), List};
  const std::u16string Lines[] = {
      Kept[0],
      u"\"x\n[HKEY_USERS\\z]\"=\"1\"",
      StringLine(u"tab\t", u"1"),
      Kept[1],
      BinaryLine(u"x\"=hex:00,\\\r[-HKEY_USERS\\z]", Bytes),
      StringLine(u"y", std::u16string_view(u"a\0b", 3)),
      List,
      u"[HKEY_USERS\\\r[-HKEY_USERS\\z]",
      u"\"of\"=\"that key\"",
  };
  EXPECT_EQ(EncodeBackup(Lines), EncodeBackup(Kept));
  EXPECT_NE(EncodeBackup(Kept).find(",\\\r01"), std::string::npos);
}

// A real editor is given each text, doubtful or not: whatever it makes of a text that is
// proved lies in the keys that were listed, and the foreign tree stays.
class RealEditorTest : public testing::TestWithParam<TRegistryKind> {};

TEST_P(RealEditorTest, DoesNoMoreThanWasRead) {
  const std::optional<TPlatform> Live = MakeLivePlatform();
  if (!Live || GetParam().Name == std::string_view("Memory"))
    GTEST_SKIP() << "there is no editor";
  int Obeyed = 0;
  for (const TCase &C : Cases) {
    const std::unique_ptr<TTestRegistry> Registry = GetParam().Make();
    TSubject Subject(*Live->Registry, Registry->Path());
    Subject.Text(u"Foreign", u"v", u"stays");
    Subject.Text(u"Foreign\\Below", u"v", u"stays");
    const std::u16string Before = Subject.Now();
    const TScratchFolder Folder;
    const std::u16string Text = Filled(C.Lines, Registry->Path(), C.Root);
    const std::string Bytes = "\xFF\xFE" + Utf16Bytes(Text);
    ASSERT_FALSE(WriteWholeFile(Folder.File(u"text.reg"), Bytes));
    const auto Editor = Live->Shell->Start(u"Regedit", u"/s \"" + Folder.File(u"text.reg") + u"\"");
    ASSERT_TRUE(Editor && Editor->WaitForEnd(60'000));
    Obeyed += Subject.Now() == Before ? 0 : 1;
    const TEditorText Read = ReadAsEditor(Bytes);
    if (Read.DoubtfulLine != 0)
      continue;
    EXPECT_TRUE(Subject.Now() != Before || C.Root == u"HKCU") << C.Why; // not known to all
    // Without the keys that were listed all is as it was.
    for (auto Key = Read.Scope.Keys.rbegin(); Key != Read.Scope.Keys.rend(); ++Key)
      Live->Registry->Open(TRegRoot::CurrentUser, u"", TRegAccess::Full).Key->DeleteTree(Key->Path);
    EXPECT_EQ(Difference(Subject.Now(), Before), "") << C.Why;
  }
  EXPECT_GT(Obeyed, 10);
}

INSTANTIATE_TEST_SUITE_P(Hosts, RealEditorTest, testing::ValuesIn(AllRegistries()),
                         [](const auto &Info) { return std::string(Info.param.Name); });

} // namespace
} // namespace hivesweep
