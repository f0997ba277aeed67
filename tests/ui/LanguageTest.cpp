#include "ui/Language.h"

#include <algorithm>
#include <set>

#include <gtest/gtest.h>

#include "platform/DiskFile.h"
#include "tests/platform/TestHosts.h"
#include "tests/ui/DiskFiles.h"
#include "tests/ui/NoEnglish.h"
#include "ui/Wording.h"

namespace hivesweep {
namespace {

using TLines = std::vector<std::u16string>;

class TTestFolders final : public TFolders {
public:
  explicit TTestFolders(std::u16string Program) : Program_(std::move(Program)) {}
  std::u16string Special(TSpecialFolder Folder) override {
    return Program_ + (Folder == TSpecialFolder::AppData ? u"Me" : u"All");
  }
  std::u16string Windows() override { return {}; }
  std::u16string Temp() override { return {}; }
  std::u16string Program() override { return Program_; }

private:
  std::u16string Program_;
};

TPlatform ProgramIn(const std::u16string &Folder) {
  TPlatform Platform = MakeLocalServices();
  Platform.Folders = std::make_unique<TTestFolders>(JoinPath(Folder, u""));
  Platform.Files = RealFiles();
  return Platform;
}

// A program folder with a "Toolbox_Language" of these files.
class TLanguageTest : public testing::Test {
protected:
  void Write(std::u16string_view Name, std::string_view Bytes) {
    Platform.Files->CreateFolder(Folder_);
    ASSERT_EQ(WriteWholeFile(JoinPath(Folder_, Name), Bytes), TError());
  }
  static std::string File(std::string_view Title, std::string_view Rest = "") {
    return "[Main]\nDisplayName=<" + std::string(Title) +
           ">\n[Hivesweep_M]\nTitle=" + std::string(Title) + "\n" + std::string(Rest);
  }
  static std::u16string TitleOf(const TLanguage &Language) {
    return Language.TextOr(u"Title", u"default");
  }

private:
  TScratchFolder Program_;
  std::u16string Folder_ = Program_.File(u"Toolbox_Language");

protected:
  TPlatform Platform = ProgramIn(Program_.Path());
};

TEST_F(TLanguageTest, WithoutFilesEveryTextIsEnglish) {
  TLanguage Language(Platform, u"Hivesweep");
  Language.SetLanguage(u"English");
  Language.SetLanguage(u"");
  EXPECT_EQ(Language.CurrentIndex(), -1);
  EXPECT_EQ(Language.LanguageNames(), TLines());
  EXPECT_EQ(TitleOf(Language), u"default");
  EXPECT_EQ(Language.TextOr(LanguageText(u"HighRisk")), u"High-Risk");
  EXPECT_EQ(Language.Text(u"Title"), u"");
}

TEST_F(TLanguageTest, ListsTheFilesAndLeavesTheLastOneLoaded) {
  for (const char *Name : {"One", "Two", "English"})
    Write(FromUtf8(Name) + u".lng", File(Name));
  Write(u"English.lng.bak", File("backup"));
  Write(u"lng", File("no dot"));
  Platform.Files->CreateFolder(TLanguage(Platform, u"").LanguageDir() + u"/Folder.lng");
  const TLanguage Language(Platform, u"Hivesweep");
  const TLines &Names = Language.LanguageNames(); // in whatever order the disk tells them
  EXPECT_EQ(std::set<std::u16string>(Names.begin(), Names.end()),
            (std::set<std::u16string>{u"One", u"Two", u"English"}));
  ASSERT_EQ(Language.DisplayNames().size(), Names.size());
  for (std::size_t Index = 0; Index < Names.size(); ++Index)
    EXPECT_EQ(Language.DisplayNames()[Index], u"<" + Names[Index] + u">");
  EXPECT_EQ(Language.CurrentIndex(), 2);
  EXPECT_EQ(TitleOf(Language), Names.back());
}

TEST_F(TLanguageTest, FallsBackToEnglishAndElseKeepsWhatItHas) {
  Write(u"German.lng", File("de", "Empty=\n Spaced = a = b \nTitle=second\nplain\n"));
  TLanguage German(Platform, u"Hivesweep");
  German.SetLanguage(u"Missing");
  EXPECT_EQ(TitleOf(German), u"de") << "there is no English either";

  Write(u"English.lng", File("en"));
  TLanguage Language(Platform, u"Hivesweep");
  Language.SetLanguage(u"gERMAN");
  EXPECT_EQ(Language.TextOr(u"tITLE", u"default"), u"de") << "the first of a name counts";
  EXPECT_EQ(Language.TextOr(u"Empty", u"default"), u"") << "empty is not missing";
  EXPECT_EQ(Language.TextOr(u"spaced", u"default"), u"a = b");
  EXPECT_EQ(Language.TextOr(u"plain", u"default"), u"default");
  for (const std::u16string_view Name :
       {u"Missing", u"", u"../Toolbox_Language/German", u"German.lng"}) {
    Language.SetLanguage(u"German");
    Language.SetLanguage(Name);
    EXPECT_EQ(TitleOf(Language), u"en") << ToUtf8(Name);
    EXPECT_EQ(Language.TextOr(u"spaced", u"gone"), u"gone") << "nothing is left of the other";
  }
}

TEST_F(TLanguageTest, ReadsEveryEncodingAndSurvivesAnyFile) {
  std::string Noise;
  for (std::uint32_t State = 1; Noise.size() < 50'000; State = State * 1664525 + 1013904223)
    Noise.push_back(static_cast<char>(State >> 24));
  std::string Headers;
  while (Headers.size() < 300'000)
    Headers += "[" + std::to_string(Headers.size()) + "]\n";
  static const struct {
    const char *Why;
    std::string Bytes;
    std::u16string_view Title;
  } Cases[] = {
      {"UTF-8 with a mark", "\xEF\xBB\xBF[_M]\r\nTitle=\xC3\xBC\xD0\xA0\r\n", u"\u00FC\u0420"},
      {"the code page", "[_M]\r\nTitle=\xFC!\r\n", u"\u00FC!"},
      {"UTF-16, cut in the middle of a unit",
       std::string("\xFF\xFE[\0_\0M\0]\0\n\0T\0i\0t\0l\0e\0=\0\xFC\0\x20\x04\x41", 29),
       u"\u00FC\u0420"},
      {"nothing", "", u"default"},
      {"only a mark", "\xFF\xFE", u"default"},
      {"zeros", std::string(1000, '\0'), u"default"},
      {"noise", Noise, u"default"},
      {"one long line", "[_M]\nTitle" + std::string(100'000, 'x'), u"default"},
      {"nothing but sections", Headers + "[_M]\nTitle=end\n", u"end"},
      {"larger than any language file", "[_M]\nTitle=1\n" + std::string(3u << 20, '\n'),
       u"default"},
  };
  Write(u"Other.lng", "[_M]\nTitle=other\n");
  for (const auto &C : Cases) {
    Write(u"A.lng", C.Bytes);
    TLanguage Language(Platform, u"");
    Language.SetLanguage(u"Other");
    Language.SetLanguage(u"A");
    EXPECT_EQ(TitleOf(Language), C.Title) << C.Why;
  }
}

TEST_F(TLanguageTest, AsksTheSuiteForTheLanguage) {
  const TLanguage Language(Platform, u"Hivesweep");
  EXPECT_EQ(Language.ReadSuiteLanguage(), u"English") << "nobody has chosen one";
  const std::u16string Suite =
      Platform.Folders->Special(TSpecialFolder::AppData) + u"\\Orvane\\Tallowmere V4";
  ASSERT_EQ(Platform.Storage->CreateFolder(Suite), TError());
  ASSERT_TRUE(WriteIni(*Platform.Profiles, Suite + u"\\Main.ini", u"Main", u"Language", u"x"));
  EXPECT_EQ(Language.ReadSuiteLanguage(), u"x");
}

class TTestForm final : public TTextForm {
public:
  struct TShown {
    std::u16string Component, Property, Text;
  };
  TTestForm(std::u16string Name, std::vector<TShown> Shown)
      : Texts(std::move(Shown)), Name_(std::move(Name)) {}
  std::u16string Name() const override { return Name_; }
  void VisitTexts(const TFormTextVisitor &Visit) override {
    for (TShown &Shown : Texts)
      Visit(Shown.Component, Shown.Property, Shown.Text);
  }
  std::vector<TShown> Texts;

private:
  std::u16string Name_;
};

TEST_F(TLanguageTest, TranslatesEachFormFromItsOwnSection) {
  Write(u"English.lng", "[Hivesweep_frm_a]\nfrm_a.Caption=new\nlab.Caption=\nimage.Hint=hint\n"
                        "notes.Items[2].Caption=i2\nNOTES.items[0].caption=i0\n"
                        "[Hivesweep_frm_b]\nlab.Caption=b\n"
                        "[Hivesweep_]\n.Caption=wrong\nlab.Caption=wrong\n");
  TTestForm A(u"frm_a", {{u"frm_a", u"Caption", u"old"},
                         {u"lab", u"Caption", u"x"},
                         {u"image", u"Caption", u"x"},
                         {u"image", u"Hint", u"x"},
                         {u"notes", u"Items[0].Caption", u"0"},
                         {u"notes", u"Items[1].Caption", u"1"},
                         {u"notes", u"Items[2].Caption", u"2"}});
  TTestForm Nameless(u"", {{u"", u"Caption", u"x"}, {u"lab", u"Caption", u"x"}});
  TTestForm B(u"frm_b", {{u"frm_b", u"Caption", u"old"}, {u"lab", u"Caption", u"x"}});
  TTextForm *const Forms[] = {&A, &Nameless, &B};
  TLanguage(Platform, u"Hivesweep").TranslateAll(Forms);

  const auto TextsOf = [](const TTestForm &Form) {
    TLines Texts;
    for (const TTestForm::TShown &Shown : Form.Texts)
      Texts.push_back(Shown.Text);
    return Texts;
  };
  EXPECT_EQ(TextsOf(A), (TLines{u"new", u"", u"x", u"hint", u"i0", u"1", u"i2"}));
  EXPECT_EQ(TextsOf(Nameless), (TLines{u"x", u"x"}));
  EXPECT_EQ(TextsOf(B), (TLines{u"old", u"b"})) << "no caption of its own, but translated";
}

TEST(LanguageText, ACountIsPutIntoATranslatorsText) {
  EXPECT_EQ(WithNumber(u"%d Problems", 0), u"0 Problems");
  EXPECT_EQ(WithNumber(u"100 %s %n: %d of %d", 7), u"100 %s %n: 7 of %d");
  EXPECT_EQ(WithNumber(u"%", 7), u"%");
}

// Every place that a text has in a language file: "[section] key".
std::set<std::u16string> PlacesOf(const TExtIniFile &File) {
  std::set<std::u16string> Places;
  for (const std::u16string &Section : File.ReadSections())
    for (const std::u16string &Key : File.ReadSection(Section))
      EXPECT_TRUE(Places.insert(u"[" + Section + u"] " + Key).second) << ToUtf8(Key) << " twice";
  return Places;
}

std::size_t CountOf(std::u16string_view Text, std::u16string_view What) {
  std::size_t Count = 0;
  for (std::size_t At = Text.find(What); At != std::u16string_view::npos;
       At = Text.find(What, At + 1))
    ++Count;
  return Count;
}

TEST(ShippedLanguages, AreComplete) {
  TPlatform Platform = ProgramIn(SHIPPED_FOLDER);
  TLanguage Language(Platform, u"Hivesweep");
  const std::vector<TFileText> Texts = AllFileTexts();
  std::set<std::u16string> Expected = {u"[Main] DisplayName"};
  for (const TFileText &Text : Texts)
    Expected.insert(u"[" + Text.Section + u"] " + Text.Key);
  ASSERT_EQ(Expected.size(), Texts.size() + 1) << "a key stands in the table twice";

  TLines Names = Language.LanguageNames();
  std::sort(Names.begin(), Names.end());
  ASSERT_EQ(Names, (TLines{u"English", u"German"}));
  for (const std::u16string &Name : Names) {
    SCOPED_TRACE(ToUtf8(Name));
    Language.SetLanguage(Name);
    EXPECT_EQ(PlacesOf(Language.LanguageFile()), Expected);
    for (const TFileText &Text : Texts) {
      const std::u16string Shown = Language.ReadFileString(Text.Section, Text.Key, u"");
      EXPECT_NE(Shown, u"") << ToUtf8(Text.Key);
      EXPECT_EQ(Shown.find(u'\uFFFD'), std::u16string::npos) << ToUtf8(Shown);
      for (const std::u16string_view Mark : {u"%", u"%d", u"&", u"..."})
        EXPECT_EQ(CountOf(Shown, Mark), CountOf(Text.English, Mark)) << ToUtf8(Shown);
      if (Name == u"English") {
        EXPECT_EQ(Shown, Text.English) << ToUtf8(Text.Key);
      }
    }
    // A record that was made of texts alone is told by its type's text.
    std::set<std::u16string> Types;
    for (std::size_t Type = 0; Type < EnglishLabels.size(); ++Type)
      Types.insert(Language.TextOr(ProblemTypeKey(static_cast<TProblemType>(Type)), u""));
    EXPECT_EQ(Types.size(), EnglishLabels.size()) << "two types of problems have one text";
  }
}

TEST(ShippedLanguages, GermanWordsEveryFailureWithoutEnglish) {
  TPlatform Platform = ProgramIn(SHIPPED_FOLDER);
  TLanguage Language(Platform, u"Hivesweep");
  Language.SetLanguage(u"German");
  TLines Texts;
  for (auto Code = static_cast<int>(TErrorCode::None) + 1;
       Code <= static_cast<int>(TErrorCode::Last); ++Code)
    Texts.push_back(Language.Words({static_cast<TErrorCode>(Code), u"<>", 7, {}}));
  for (const std::uint32_t Number : {2U, 5U, 1U, 4711U})
    Texts.push_back(Language.Words(About(u"<>", SystemError(Number))));
  TNotRemoved Problem;
  for (int Why = 0; Why <= static_cast<int>(TRemoval::FromOtherKey); ++Why) {
    Problem.Why = static_cast<TRemoval>(Why);
    Texts.push_back(Worded(Language, Problem));
  }
  for (const TRegStatus Status : {TRegStatus::Denied, TRegStatus::Failed})
    Texts.push_back(Worded(Language, TPutFailure{u"<>", u"", Status}));
  for (const std::u16string &Text : Texts) {
    EXPECT_NE(Text, u"");
    EXPECT_EQ(ToUtf8(EnglishIn(Language, Text)), "") << ToUtf8(Text);
  }
  EXPECT_NE(EnglishIn(Language, EnglishWords({TErrorCode::NoSuchBackup, {}})), u"")
      << "it would find it";
}

} // namespace
} // namespace hivesweep
