#include "cli/TerminalText.h"

#include <gtest/gtest.h>

#include "platform/Text.h"

namespace hivesweep {

namespace {

TEST(TerminalText, HoldsBackWhatATerminalWouldObey) {
  static const struct {
    const char *Why;
    std::u16string Text;
    const char16_t *Shown;
  } Cases[] = {
      {"plain text", u"a\\b é 日本", u"a\\b é 日本"},
      {"an escape sequence", u"a\x1B[2Jb", u"a·[2Jb"},
      {"line breaks and tabs", u"a\r\n\tb", u"a···b"},
      {"a zero", std::u16string(u"a\0b", 3), u"a·b"},
      {"delete and the upper controls", u"\x7F\x80\x9B\x9F", u"····"},
      {"writing turned round", u"exe\u202Efdp.\u2066", u"exe·fdp.·"},
      {"invisible characters", u"a\u200Bb\uFEFF\u00AD", u"a·b··"},
      {"a lone first half", u"a\xD83D", u"a\uFFFD"},
      {"a lone second half", u"\xDE00z", u"\uFFFDz"},
      {"halves the wrong way round", u"\xDE00\xD83D", u"\uFFFD\uFFFD"},
      {"a pair", u"\U0001F600", u"\U0001F600"},
  };
  for (const auto &C : Cases)
    EXPECT_EQ(Presentable(C.Text), C.Shown) << C.Why;
}

TEST(TerminalText, IsCutToWidthsAndKeepsItsEnd) {
  static const struct {
    const char *Why;
    const char16_t *Text;
    int Width;
    const char16_t *Middle;
    const char16_t *End;
  } Cases[] = {
      {"fits", u"abcdef", 6, u"abcdef", u"abcdef"},
      {"one too long", u"abcdefg", 6, u"a…defg", u"abcde…"},
      {"room for one", u"abc", 1, u"…", u"…"},
      {"no room", u"abc", 0, u"", u""},
      {"wide ones count twice", u"日本語日本語", 7, u"日…本語", u"日本語…"},
      {"a wide one on the border", u"日本語日本語", 8, u"日…本語", u"日本語…"},
      {"marks stay on their letter", u"e\u0301e\u0301e\u0301e\u0301", 3, u"…e\u0301e\u0301",
       u"e\u0301e\u0301…"},
      {"a pair is not split", u"\U0001F600\U0001F601\U0001F602", 4, u"…\U0001F602", u"\U0001F600…"},
  };
  for (const auto &C : Cases) {
    EXPECT_EQ(ShortenMiddle(C.Text, C.Width), C.Middle) << C.Why;
    EXPECT_EQ(ShortenEnd(C.Text, C.Width), C.End) << C.Why;
  }
}

} // namespace

} // namespace hivesweep
