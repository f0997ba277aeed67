// The families that are real on every system: settings files, clock, console,
// whole files.
#include <algorithm>
#include <filesystem>

#include <gtest/gtest.h>

#include "platform/Console.h"
#include "platform/DiskFile.h"
#include "tests/platform/TestHosts.h"

namespace hivesweep {
namespace {

using TTexts = std::vector<std::u16string>;

// ---- settings files -------------------------------------------------------------

std::u16string Joined(const TTexts &Lines) {
  std::u16string Out;
  for (const std::u16string &Line : Lines)
    Out += Line + u"\n";
  return Out;
}

TTexts NamesIn(const TTexts &Lines) {
  TTexts Out;
  for (const std::u16string &Line : Lines)
    if (const std::size_t Equals = Line.find(u'='); Equals != std::u16string::npos)
      Out.push_back(Line.substr(0, Equals));
  return Out;
}

TTexts LinesOfIni(TProfiles &Profiles, std::u16string_view Path, std::u16string_view Section) {
  TIniSection Read;
  EXPECT_EQ(Profiles.ReadSection(Path, Section, Read), TError());
  TTexts Out;
  for (const TIniSection::TLine &Line : Read.Lines())
    Out.push_back(Line.Name + (Line.Text ? u"=" + *Line.Text : u""));
  return Out;
}

TEST(Profiles, AreReadAsWindowsReadsThem) {
  static const struct {
    const char *Why;
    const char *Bytes;
    std::u16string_view Section;
    std::u16string_view Key;
    std::u16string_view Text;  // "-": the default
    std::u16string_view Lines; // each with its end
    bool NotUnderWine = false;
  } Cases[] = {
      {"plain", "[S]\r\na=1\r\nb=2\r\n", u"S", u"b", u"2", u"a=1\nb=2\n"},
      {"no line end at the end", "[S]\na=1", u"S", u"a", u"1", u"a=1\n"},
      {"another case", "[sEct]\r\nkEY=Val\r\n", u"Sect", u"Key", u"Val", u"kEY=Val\n"},
      {"an empty file", "", u"S", u"a", u"-", u""},
      {"another section's key", "[S]\r\na=1\r\n[T]\r\nb=2\r\n", u"S", u"b", u"-", u"a=1\n"},
      {"a key before any section", "a=1\r\n[S]\r\nb=2\r\n", u"S", u"a", u"-", u"b=2\n"},
      {"no such section", "[S]\r\na=1\r\n", u"T", u"a", u"-", u""},
      {"the first section of a name counts", "[S]\r\na=1\r\n[T]\r\n[S]\r\na=2\r\nb=3\r\n", u"S",
       u"b", u"-", u"a=1\n"},
      {"the first key of a name counts", "[S]\r\na=1\r\nA=2\r\n", u"S", u"A", u"1", u"a=1\nA=2\n"},
      {"blanks around go", "  [S]  \r\n \t a b \t = \t c d \t \r\n", u"S", u"a b", u"c d",
       u"a b=c d\n"},
      {"quotes keep blanks", "[S]\r\na=\" x \"\r\n", u"S", u"a", u" x ", u"a=\" x \"\n"},
      {"single quotes too", "[S]\r\na=' x '\r\n", u"S", u"a", u" x ", u"a=' x '\n"},
      {"only one pair goes", "[S]\r\na=\"\"x\"\"\r\n", u"S", u"a", u"\"x\"", u"a=\"\"x\"\"\n"},
      {"quotes that do not match stay", "[S]\r\na=\"x'\r\n", u"S", u"a", u"\"x'", u"a=\"x'\n"},
      {"a single quote stays", "[S]\r\na=\"\r\n", u"S", u"a", u"\"", u"a=\"\n"},
      {"an empty value is a value", "[S]\r\na=\r\n", u"S", u"a", u"", u"a=\n"},
      {"the first = divides", "[S]\r\na=b=c\r\n", u"S", u"a", u"b=c", u"a=b=c\n"},
      {"comments are no lines", "[S]\r\n;a=1\r\n ; b=2\r\nc=3;x\r\n", u"S", u"c", u"3;x",
       u"c=3;x\n"},
      {"empty lines are none", "[S]\r\n\r\n  \r\na=1\r\n\r\nb=2\r\n", u"S", u"b", u"2",
       u"a=1\nb=2\n"},
      {"a line without = is a line, no key", "[S]\r\nalone\r\na=1\r\n", u"S", u"alone", u"-",
       u"alone\na=1\n"},
      {"a registry path as a name", "[S]\r\nHKEY_USERS\\x y\\{1}=n/a\r\n", u"S",
       u"hkey_users\\X Y\\{1}", u"n/a", u"HKEY_USERS\\x y\\{1}=n/a\n"},
      {"the code page", "[S]\r\n\xE4=\x80\r\n", u"S", u"\u00E4", u"\u20AC", u"\u00E4=\u20AC\n"},
      {"the code page in another case", "[\xC4]\r\n\xF6=1\r\n", u"\u00E4", u"\u00D6", u"1",
       u"\u00F6=1\n", true},
      {"blanks around the asked names", "[S]\r\na=1\r\n", u" S ", u"  a ", u"1", u"a=1\n", true},
      {"blanks in a header go", "[ \tS ]\r\na=1\r\n", u"S", u"a", u"1", u"a=1\n", true},
      {"text behind a header is none", "[S]b=2\r\na=1\r\n", u"S", u"b", u"-", u"a=1\n"},
      {"the first bracket ends a header", "[S] ;x]\r\na=1\r\n", u"S", u"a", u"1", u"a=1\n", true},
      {"the line ends a header", "[S  \r\na=1\r\n", u"S", u"a", u"1", u"a=1\n", true},
      {"a section without a name", "[]\r\na=1\r\n", u"", u"a", u"1", u"a=1\n", true},
      {"a number sign is no comment", "[S]\r\n#a=#1\r\n", u"S", u"#a", u"#1", u"#a=#1\n"},
  };
  const TScratchFolder Scratch;
  const std::u16string File = Scratch.File(u"s.ini");
  const TPlatform Platform = MakeLocalServices();
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Why);
    ASSERT_EQ(WriteWholeFile(File, C.Bytes), TError());
    EXPECT_EQ(ToUtf8(Platform.Profiles->ReadString(File, C.Section, C.Key, u"-")), ToUtf8(C.Text));
    if (const auto System = SystemIniText(File, C.Section, C.Key, u"-");
        System && !(C.NotUnderWine && IsWine())) {
      EXPECT_EQ(ToUtf8(*System), ToUtf8(C.Text)) << "by the system's own function";
    }
    const TTexts Lines = LinesOfIni(*Platform.Profiles, File, C.Section);
    EXPECT_EQ(ToUtf8(Joined(Lines)), ToUtf8(C.Lines));
    EXPECT_EQ(KeysOfIni(*Platform.Profiles, File, C.Section), NamesIn(Lines));
  }
}

TEST(Profiles, ADefaultComesBackAsItIs) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  ASSERT_EQ(WriteWholeFile(Scratch.File(u"s.ini"), "[S]\r\na=\r\n"), TError());
  for (const std::u16string_view Default : {u"", u"  x  ", u"\"x\"", u"\n"}) {
    EXPECT_EQ(Platform.Profiles->ReadString(Scratch.File(u"s.ini"), u"S", u"b", Default), Default);
    EXPECT_EQ(Platform.Profiles->ReadString(Scratch.File(u"no.ini"), u"S", u"a", Default), Default);
    EXPECT_EQ(Platform.Profiles->ReadString(Scratch.File(u"s.ini"), u"S", u"a", Default), u"");
  }
}

TEST(Profiles, TextsOfAnySizeAndOfAllLettersAreRead) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::u16string File = Scratch.File(u"s.ini");
  // Every length around the size of the first buffer, then far beyond it.
  for (std::size_t Length = 250; Length < 20'000; Length += Length < 270 ? 1 : 5'000) {
    const std::u16string Value(Length, u'\u0416');
    const std::u16string Name = u"key " + std::u16string(Length, u'k');
    const std::u16string Line = Name + u"=" + Value;
    const std::u16string Text = u"\uFEFF[S]\r\n" + Line + u"\r\nb=2\r\n";
    ASSERT_EQ(WriteWholeFile(File, Utf16Bytes(Text)), TError());
    EXPECT_EQ(Platform.Profiles->ReadString(File, u"S", Name, u""), Value) << Length;
    EXPECT_EQ(KeysOfIni(*Platform.Profiles, File, u"S"), (TTexts{Name, u"b"})) << Length;
    EXPECT_EQ(LinesOfIni(*Platform.Profiles, File, u"S"), (TTexts{Line, u"b=2"})) << Length;
  }
}

TEST(Profiles, AKeyIsWrittenAndAllElseStays) {
  static const struct {
    const char *Why;
    std::string Bytes; // "-": no file
    std::u16string_view Section;
    std::u16string_view Key;
    std::optional<std::u16string_view> Text;
    std::u16string_view Lines; // of the section, afterwards, each with its end
  } Cases[] = {
      {"a file that is missing", "-", u"S", u"\u0416", u"\u65E5", u"\u0416=\u65E5\n"},
      {"an empty file", "", u"S", u"a", u"1", u"a=1\n"},
      {"another text", "[S]\r\na=1\r\nb=2\r\n", u"S", u"a", u"new", u"a=new\nb=2\n"},
      {"an empty one", "[S]\r\na=1\r\n", u"S", u"a", u"", u"a=\n"},
      {"over an empty one", "[S]\r\na=\r\n", u"s", u"A", u"1", u"a=1\n"},
      {"a new key", "[T]\r\na=1\r\n[S]\r\nb=2\r\n", u"S", u"a", u"1", u"b=2\na=1\n"},
      {"a new section", "[T]\r\na=1\r\n", u"S", u"a", u"1", u"a=1\n"},
      {"no line end at the end", "[S]\na=1", u"S", u"b", u"2", u"a=1\nb=2\n"},
      {"the first section counts", "[S]\r\n[T]\r\n[S]\r\na=1\r\n", u"S", u"a", u"2", u"a=2\n"},
      {"a registry path", "[S]\r\n", u"S", u"HKEY_USERS\\x y\\{1}", u"n/a",
       u"HKEY_USERS\\x y\\{1}=n/a\n"},
      {"a code page", "[S]\r\n\xE4=\x80\r\n", u"S", u"b", u"\u00FC", u"\u00E4=\u20AC\nb=\u00FC\n"},
      {"deleted", "[S]\r\na=1\r\nb=2\r\n", u"S", u"A", std::nullopt, u"b=2\n"},
      {"deleted, the only one", "[S]\na=1", u"S", u"a", std::nullopt, u""},
      {"no such key to delete", "[S]\r\na=1\r\n", u"S", u"b", std::nullopt, u"a=1\n"},
      {"no such section", "[T]\r\na=1\r\n", u"S", u"a", std::nullopt, u""},
      {"no file to delete from", "-", u"S", u"a", std::nullopt, u""},
  };
  const TPlatform Platform = MakeLocalServices();
  for (const auto &C : Cases) {
    SCOPED_TRACE(C.Why);
    const TScratchFolder Scratch;
    const std::u16string File = Scratch.File(u"s.ini");
    if (C.Bytes != "-") {
      ASSERT_EQ(WriteWholeFile(File, C.Bytes), TError());
    }
    EXPECT_TRUE(WriteIni(*Platform.Profiles, File, C.Section, C.Key, C.Text));
    EXPECT_EQ(ToUtf8(Joined(LinesOfIni(*Platform.Profiles, File, C.Section))), ToUtf8(C.Lines));
    EXPECT_EQ(Scratch.Count(), C.Bytes == "-" && !C.Text ? 0u : 1u);
    if (C.Bytes.find("[T]\r\na=1") != std::string::npos) {
      EXPECT_EQ(Platform.Profiles->ReadString(File, u"T", u"a", u""), u"1");
    }
  }
}

TEST(Profiles, AFileThatCannotBeReadIsNotAnEmptyOne) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  TIniSection Read;
  Read.Add({u"a", u"1"});
  const TError Failure = Platform.Profiles->ReadSection(Scratch.Path(), u"S", Read);
  EXPECT_NE(Failure, TError()) << "a folder has the name";
  EXPECT_TRUE(Read.Lines().empty());
  EXPECT_FALSE(WriteIni(*Platform.Profiles, Scratch.Path(), u"S", u"a", u"1"));
  EXPECT_EQ(Platform.Profiles->ReadSection(Scratch.File(u"missing"), u"S", Read), TError());
}

TEST(Profiles, AllChangesAreMadeTogetherOrNone) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::u16string File = Scratch.File(u"s.ini");
  ASSERT_EQ(WriteWholeFile(File, "[S]\r\nb=1\r\na=1\r\nc=1\r\n[T]\r\na=1\r\n"), TError());
  const TIniChange Broken[] = {{u"a", u"2"}, {u"new", u"2\n"}};
  EXPECT_NE(Platform.Profiles->WriteSection(File, u"S", Broken), TError());
  EXPECT_EQ(Joined(LinesOfIni(*Platform.Profiles, File, u"S")), u"b=1\na=1\nc=1\n");
  const TIniChange Changes[] = {
      {u"new", u"2"}, {u"A", u"longer"}, {u"c", std::nullopt}, {u"b", u""}, {u"newer", u"3"}};
  EXPECT_EQ(Platform.Profiles->WriteSection(File, u"S", Changes), TError());
  EXPECT_EQ(Joined(LinesOfIni(*Platform.Profiles, File, u"S")), u"b=\na=longer\nnew=2\nnewer=3\n");
  EXPECT_EQ(Joined(LinesOfIni(*Platform.Profiles, File, u"T")), u"a=1\n");
}

TEST(Profiles, AFileKeepsItsEncoding) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::u16string File = Scratch.File(u"s.ini");
  const auto Write = [&] {
    EXPECT_TRUE(WriteIni(*Platform.Profiles, File, u"S", u"b", u"\u00FC\u0416"));
    std::string Bytes;
    EXPECT_EQ(ReadWholeFile(File, Bytes), TError());
    return Bytes;
  };
  EXPECT_TRUE(Write().starts_with("\xFF\xFE[\0S\0")) << "a new one takes every letter";
  EXPECT_EQ(Platform.Profiles->ReadString(File, u"S", u"b", u""), u"\u00FC\u0416");

  ASSERT_EQ(WriteWholeFile(File, "[S]\r\n\xE4=\xC4\r\n"), TError());
  const std::string Ansi = Write();
  EXPECT_NE(Ansi.find("\xE4=\xC4\r\n"), std::string::npos);
  EXPECT_NE(Ansi.find("b=\xFC?\r\n"), std::string::npos) << Ansi;
}

TEST(Profiles, WhatCannotBeWrittenIsSaid) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  const std::u16string File = Scratch.File(u"s.ini");
  ASSERT_EQ(WriteWholeFile(File, "[S]\r\na=1\r\n"), TError());
  SetReadOnly(File, true);
  const struct {
    const char *Why;
    std::u16string Path, Section, Key, Text;
  } Cases[] = {
      {"a read-only file", File, u"S", u"a", u"2"},
      {"a folder has the name", Scratch.Path(), u"S", u"a", u"2"},
      {"the folder is missing", JoinPath(Scratch.File(u"no"), u"s.ini"), u"S", u"a", u"2"},
      {"a line break in the text", Scratch.File(u"new"), u"S", u"a", u"2\r\n[T]"},
      {"in the key", Scratch.File(u"new"), u"S", u"b\na", u"2"},
      {"in the section", Scratch.File(u"new"), u"S\r", u"a", u"2"},
      {"a zero", Scratch.File(u"new"), u"S", std::u16string(u"a\0", 2), u"2"},
      {"a zero in the path", Scratch.File(std::u16string(u"new\0", 4)), u"S", u"a", u"2"},
  };
  for (const auto &C : Cases)
    EXPECT_FALSE(WriteIni(*Platform.Profiles, C.Path, C.Section, C.Key, C.Text)) << C.Why;
  EXPECT_EQ(Platform.Profiles->ReadString(File, u"S", u"a", u""), u"1");
  EXPECT_EQ(Scratch.Count(), 1u);
  SetReadOnly(File, false);
}

TEST(Profiles, AStampIsPromisedOnlyForAFileThatHasSettled) {
  const TScratchFolder Scratch;
  TPlatform Platform = MakeLocalServices();
  TProfiles &Profiles = *Platform.Profiles;
  const std::u16string File = Scratch.File(u"s.ini");

  const auto Missing = Profiles.Stamp(File);
  ASSERT_TRUE(Missing);
  EXPECT_EQ(*Missing, TFileStamp());
  EXPECT_EQ(Profiles.Stamp(JoinPath(Scratch.File(u"no folder"), u"s.ini")), Missing);

  ASSERT_EQ(WriteWholeFile(File, "[S]\r\na=1\r\n"), TError());
  EXPECT_FALSE(Profiles.Stamp(File)) << "just written";
  EXPECT_EQ(Profiles.Stamp(JoinPath(File, u"x")), Missing) << "a file used as a folder";
  for (const int Young : {1, 2, -1}) {
    SetAge(File, Young);
    EXPECT_FALSE(Profiles.Stamp(File)) << Young << " seconds old";
  }
  for (const int Future : {-60, -100'000}) {
    SetAge(File, Future);
    const auto Stamp = Profiles.Stamp(File);
    EXPECT_TRUE(Stamp) << "a wrong clock, " << Future;
    EXPECT_EQ(Profiles.Stamp(File), Stamp);
  }
  SetAge(File, 4);
  const auto Settled = Profiles.Stamp(File);
  ASSERT_TRUE(Settled);
  EXPECT_NE(Settled, Missing);
  EXPECT_EQ(Profiles.Stamp(File), Settled);
  SetAge(File, 60);
  const auto Older = Profiles.Stamp(File);
  ASSERT_TRUE(Older);
  EXPECT_NE(Older, Settled) << "another time";
}

// ---- whole files -----------------------------------------------------------------

TEST(DiskFile, IsReadAsItWasWritten) {
  const TScratchFolder Scratch;
  std::string Large;
  for (int Number = 0; Number < 700'000; ++Number)
    Large.push_back(static_cast<char>(Number * 7));
  const std::u16string File = Scratch.File(u"\u00E4 \u0416 \u65E5.bin");
  // From large to small: nothing of an older content may stay.
  for (const std::string &Bytes : {Large, std::string("\0\r\n\x1A\xFF", 5), std::string()}) {
    ASSERT_EQ(WriteWholeFile(File, Bytes), TError());
    std::string Read = "left over";
    ASSERT_EQ(ReadWholeFile(File, Read), TError());
    EXPECT_TRUE(Read == Bytes) << Read.size();
    EXPECT_EQ(Scratch.Count(), 1u) << "another file was left behind";
  }
}

TEST(DiskFile, LongPathsAreNoDifferent) {
  const TScratchFolder Scratch;
  const std::u16string Name(240, u'n'); // too long only together with its folder
  std::string Read;
  ASSERT_EQ(WriteWholeFile(Scratch.File(Name), "x"), TError());
  ASSERT_EQ(WriteWholeFile(Scratch.File(Name), "y"), TError());
  EXPECT_EQ(ReadWholeFile(Scratch.File(Name), Read), TError());
  EXPECT_EQ(Read, "y");
}

TEST(DiskFile, WhatCannotBeDoneIsSaidAndChangesNothing) {
  const TScratchFolder Scratch;
  const std::u16string File = Scratch.File(u"old.txt");
  ASSERT_EQ(WriteWholeFile(File, "old"), TError());
  SetReadOnly(File, true);
  const struct {
    const char *Why;
    std::u16string Path;
  } Cases[] = {
      {"a read-only file", File},
      {"a folder has the name", Scratch.Path()},
      {"the folder is missing", JoinPath(Scratch.File(u"missing"), u"x")},
      {"a file used as a folder", JoinPath(File, u"x")},
      {"a zero inside the name", Scratch.File(std::u16string(u"cut\0x", 5))},
      {"no name", u""},
  };
  for (const auto &C : Cases) {
    const TError Error = WriteWholeFile(C.Path, "new");
    ASSERT_NE(Error, TError()) << C.Why;
    const std::u16string Words = EnglishWords(Error);
    EXPECT_EQ(Words, Trim(Words)) << "goes into a line of output";
    EXPECT_FALSE(Words.ends_with(u'.')) << ToUtf8(Words);
    std::string Read = "left over";
    if (C.Path != File) {
      EXPECT_NE(ReadWholeFile(C.Path, Read), TError()) << C.Why;
      EXPECT_EQ(Read, "") << C.Why;
    }
  }
  EXPECT_EQ(Scratch.Count(), 1u);
  std::string Read;
  EXPECT_EQ(ReadWholeFile(File, Read), TError());
  EXPECT_EQ(Read, "old");
  EXPECT_EQ(CheckFolder(Scratch.Path()), TError());
  for (const std::u16string &Path : {File, Scratch.File(u"missing"), std::u16string(),
                                     Scratch.Path() + std::u16string(u"\0x", 2)})
    EXPECT_NE(CheckFolder(Path), TError()) << ToUtf8(Path);
  SetReadOnly(File, false);
}

TEST(DiskFile, ALargerOneThanTheLimitIsNotRead) {
  const TScratchFolder Scratch;
  const std::u16string File = Scratch.File(u"large");
  ASSERT_EQ(WriteWholeFile(File, "123456"), TError());
  std::string Read;
  EXPECT_EQ(ReadWholeFile(File, Read, 6), TError());
  EXPECT_EQ(ReadWholeFile(File, Read, 5), FileTooLarge(5));
  EXPECT_EQ(Read, "");
  std::filesystem::resize_file(File, LargestInputFile + 1);
  EXPECT_EQ(ReadWholeFile(File, Read), FileTooLarge(LargestInputFile));
}

TEST(DiskFile, PathsAreJoinedAndMadeAbsolute) {
  const TScratchFolder Scratch;
  const std::u16string Joined = JoinPath(Scratch.Path(), u"x");
  EXPECT_EQ(Joined, Scratch.File(u"x"));
  EXPECT_EQ(JoinPath(Joined.substr(0, Joined.size() - 1), u"x"), Joined) << "ends in a separator";
  EXPECT_EQ(JoinPath(u"", u"x"), u"x");
  EXPECT_EQ(AbsolutePath(Joined), Joined);
  const std::u16string Current = AbsolutePath(u"x");
  EXPECT_TRUE(Current.ends_with(Joined.substr(Joined.size() - 2))) << ToUtf8(Current);
  EXPECT_EQ(AbsolutePath(Current), Current);
}

// ---- the program's own files -----------------------------------------------------------

TEST(Storage, KeepsListsAndReplacesFiles) {
  const TScratchFolder Scratch;
  TPlatform Platform = MakeLocalServices();
  TStorage &Storage = *Platform.Storage;
  const std::u16string Folder = JoinPath(Scratch.File(u"new \u0416"), u"below");
  std::vector<TStoredFile> Found(1);
  EXPECT_EQ(Storage.List(Folder, Found), TError()) << "missing";
  EXPECT_TRUE(Found.empty());
  EXPECT_EQ(Storage.CreateFolder(Folder), TError());
  EXPECT_EQ(Storage.CreateFolder(Folder), TError()) << "is there";
  EXPECT_EQ(Storage.List(Folder, Found), TError());
  EXPECT_TRUE(Found.empty());

  const TLocalTime Before = Platform.Clock->Now();
  const std::u16string New = JoinPath(Folder, u"new"), Old = JoinPath(Folder, u"\u00E4 old.txt");
  EXPECT_EQ(Storage.CreateFolder(JoinPath(Folder, u"sub")), TError());
  EXPECT_EQ(Storage.Write(Old, "the old, longer content"), TError());
  EXPECT_EQ(Storage.Write(Old, "the old one"), TError());
  EXPECT_EQ(Storage.Write(New, std::string(70'000, 'n')), TError());
  const TLocalTime After = Platform.Clock->Now();
  EXPECT_EQ(Storage.List(Folder, Found), TError());
  std::sort(Found.begin(), Found.end(),
            [](const auto &Left, const auto &Right) { return Left.Name < Right.Name; });
  ASSERT_EQ(Found.size(), 3u);
  EXPECT_EQ(Found[0].Name, u"new");
  EXPECT_EQ(Found[0].Size, 70'000u);
  EXPECT_LE(Before, Found[0].Modified);
  EXPECT_LE(Found[0].Modified, After);
  EXPECT_FALSE(Found[0].IsFolder);
  EXPECT_EQ(Found[1].Name, u"sub");
  EXPECT_TRUE(Found[1].IsFolder);
  EXPECT_EQ(Found[2].Size, 11u);

  std::string Read;
  EXPECT_EQ(Storage.Rename(New, Old), TError());
  EXPECT_EQ(Storage.Read(Old, Read), TError());
  EXPECT_TRUE(Read == std::string(70'000, 'n'));
  EXPECT_NE(Storage.Read(New, Read), TError());
  EXPECT_NE(Storage.Rename(New, Old), TError()) << "nothing to rename";

  // A file that is marked read-only stays until that is taken off it.
  SetReadOnly(Old, true);
  EXPECT_EQ(Storage.Write(New, "x"), TError());
  EXPECT_NE(Storage.Write(Old, "x"), TError());
  EXPECT_NE(Storage.Rename(New, Old), TError());
  EXPECT_NE(Storage.Remove(Old), TError());
  EXPECT_EQ(Storage.Read(Old, Read), TError());
  EXPECT_EQ(Read.size(), 70'000u);
  for (const std::u16string &Path : {Old, Folder, JoinPath(Folder, u"missing")})
    Storage.MakeWritable(Path);
  EXPECT_EQ(Storage.Rename(New, Old), TError());
  EXPECT_EQ(Storage.Remove(Old), TError());
  EXPECT_EQ(Storage.Remove(Old), TError()) << "has gone";
}

TEST(Storage, ANewNameIsNobodysBefore) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  TStorage &Storage = *Platform.Storage;
  const std::u16string One = Scratch.File(u"one"), Two = Scratch.File(u"two");
  EXPECT_EQ(Storage.WriteNew(One, "first"), TError());
  EXPECT_NE(Storage.WriteNew(One, "second"), TError());
  EXPECT_EQ(Storage.WriteNew(Two, "another"), TError());
  EXPECT_NE(Storage.RenameNew(Two, One), TError());
  EXPECT_EQ(Storage.RenameNew(Two, Scratch.File(u"three")), TError());
  std::string Read;
  EXPECT_EQ(Storage.ReadFront(Scratch.File(u"three"), 3, Read), TError());
  EXPECT_EQ(Read, "ano");
  EXPECT_EQ(Storage.ReadFront(One, 99, Read), TError());
  EXPECT_EQ(Read, "first");
  EXPECT_NE(Storage.ReadFront(Two, 3, Read), TError()) << "it has another name now";
}

TEST(Storage, AHeldFileIsRefusedUntilItIsGivenBack) {
  const TScratchFolder Scratch;
  const TPlatform Platform = MakeLocalServices();
  TStorage &Storage = *Platform.Storage;
  const std::u16string File = Scratch.File(u"lock");
  for (int Round = 0; Round < 2; ++Round) {
    const THolding First = Storage.Hold(File);
    ASSERT_TRUE(First.File) << ToUtf8(EnglishWords(First.Error));
    const THolding Second = Storage.Hold(File);
    EXPECT_FALSE(Second.File);
    EXPECT_TRUE(Second.IsHeldElsewhere);
    EXPECT_NE(Second.HolderProcess, 0u);
    EXPECT_TRUE(Second.Holder.starts_with(u"platform_test")) << ToUtf8(Second.Holder);
  }
  const THolding Lost = Storage.Hold(JoinPath(Scratch.File(u"no folder"), u"lock"));
  EXPECT_FALSE(Lost.File || Lost.IsHeldElsewhere);
  EXPECT_NE(Lost.Error, TError());
}

TEST(Storage, WhatCannotBeDoneIsSaid) {
  const TScratchFolder Scratch;
  TPlatform Platform = MakeLocalServices();
  TStorage &Storage = *Platform.Storage;
  const std::u16string File = Scratch.File(u"file");
  ASSERT_EQ(Storage.Write(File, "kept"), TError());
  const std::u16string Cut = Scratch.File(std::u16string(u"cut\0x", 5));
  const std::u16string Lost = JoinPath(Scratch.File(u"no folder"), u"x");
  std::string Read;
  std::vector<TStoredFile> Found;
  const struct {
    const char *Why;
    TError Error;
  } Cases[] = {
      {"write into a missing folder", Storage.Write(Lost, "x")},
      {"write over a folder", Storage.Write(Scratch.Path(), "x")},
      {"write a zero", Storage.Write(Cut, "x")},
      {"read what is missing", Storage.Read(Lost, Read)},
      {"rename into a missing folder", Storage.Rename(File, Lost)},
      {"rename over a folder", Storage.Rename(File, Scratch.Path())},
      {"rename to a zero", Storage.Rename(File, Cut)},
      {"remove a folder", Storage.Remove(Scratch.Path())},
      {"remove a zero", Storage.Remove(Cut)},
      {"a folder over a file", Storage.CreateFolder(File)},
      {"a folder below a file", Storage.CreateFolder(JoinPath(File, u"x"))},
      {"a folder with a zero", Storage.CreateFolder(Cut)},
      {"list a zero", Storage.List(Cut, Found)},
  };
  for (const auto &C : Cases) {
    EXPECT_NE(C.Error, TError()) << C.Why;
  }
  EXPECT_EQ(Scratch.Count(), 1u);
  EXPECT_EQ(Storage.Read(File, Read), TError());
  EXPECT_EQ(Read, "kept");
}

// ---- the rest ---------------------------------------------------------------------

TEST(Ansi, EveryByteBecomesOneUnit) {
  std::string Bytes;
  for (int Byte = 0; Byte < 256; ++Byte)
    Bytes.push_back(static_cast<char>(Byte));
  const std::u16string Text = FromAnsi(Bytes);
  ASSERT_EQ(Text.size(), 256u);
  for (char16_t Unit = 0; Unit < 0x80; ++Unit)
    EXPECT_EQ(Text[Unit], Unit);
  // Windows-1252, as tests run with: what differs from Latin-1 and what is undefined.
  EXPECT_EQ(Text.substr(0x80, 4), u"\u20AC\u0081\u201A\u0192");
  EXPECT_EQ(Text.substr(0x8C, 4), u"\u0152\u008D\u017D\u008F");
  EXPECT_EQ(Text.substr(0x9C, 6), u"\u0153\u009D\u017E\u0178\u00A0\u00A1");
  EXPECT_EQ(Text[0xFF], u'\u00FF');
  EXPECT_EQ(FromAnsi(""), u"");
  EXPECT_EQ(ToAnsi(Text), Bytes);
  EXPECT_EQ(ToAnsi(u"a\u0416\u65E5b"), "a??b");
  EXPECT_EQ(ToAnsi(u""), "");
}

TEST(Console, WritesTheBytesAsTheyStandWhereThereIsNoTerminal) {
  testing::internal::CaptureStdout();
  const bool Written = ConsoleWrite(TConsoleStream::Output, "a\n\xC3\xA4\xE2\x82\xAC\n");
  const bool Terminal = IsTerminal(TConsoleStream::Output);
  const std::string Seen = testing::internal::GetCapturedStdout();
  EXPECT_TRUE(Written);
  EXPECT_FALSE(Terminal);
  EXPECT_EQ(Seen, "a\n\xC3\xA4\xE2\x82\xAC\n");
}

TEST(Clock, PausesForAboutAsLongAsAskedAndKnowsTheDay) {
  const TPlatform Platform = MakeLocalServices();
  const std::uint64_t Before = MillisecondTicks();
  Platform.Clock->Pause(60);
  const std::uint64_t Passed = MillisecondTicks() - Before;
  EXPECT_GE(Passed, 45u); // counters go in steps of up to 16
  EXPECT_LT(Passed, 10'000u);

  const TLocalTime First = Platform.Clock->Now();
  const TLocalTime Second = Platform.Clock->Now();
  EXPECT_LE(First, Second);
  EXPECT_GE(First.Year, 2024);
  EXPECT_TRUE(First.Month >= 1 && First.Month <= 12 && First.Day >= 1 && First.Day <= 31);
  EXPECT_TRUE(First.Hour <= 23 && First.Minute <= 59 && First.Second <= 60);
}

} // namespace
} // namespace hivesweep
