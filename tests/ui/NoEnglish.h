// Finds English in what a window of another language shows.
#pragma once

#include <set>
#include <string>
#include <string_view>
#include <utility>

#include "platform/Error.h"
#include "platform/Text.h"
#include "ui/Language.h"

namespace hivesweep {

// The words of a text in small letters, from three letters on.
inline std::set<std::u16string> WordsIn(std::u16string_view Text) {
  std::set<std::u16string> Words;
  std::u16string Word;
  for (const char16_t Unit : std::u16string(Text) + u" ") {
    const bool IsLetter =
        (Unit >= u'A' && Unit <= u'Z') || (Unit >= u'a' && Unit <= u'z') || Unit >= u'\u00C0';
    if (IsLetter)
      Word.push_back(Unit);
    else if (Word.size() >= 3)
      Words.insert(AsciiLower(std::exchange(Word, {})));
    else
      Word.clear();
  }
  return Words;
}

// The words of the text that stand in English texts, those of the system's errors included,
// and in no text of the loaded language file. Names and paths are to be taken out before.
inline std::u16string EnglishIn(const TLanguage &Language, std::u16string_view Text) {
  std::set<std::u16string> English, Own;
  for (const TFileText &Each : AllFileTexts()) {
    English.merge(WordsIn(Each.English));
    // A line that nobody has translated vouches for no word.
    if (const std::u16string Line = Language.ReadFileString(Each.Section, Each.Key, u"");
        Line != Each.English)
      Own.merge(WordsIn(Line));
  }
  for (std::uint32_t Number = 1; Number < 300; ++Number)
    English.merge(WordsIn(SystemErrorText(Number)));
  std::u16string Found;
  for (const std::u16string &Word : WordsIn(Text))
    if (English.contains(Word) && !Own.contains(Word))
      Found += Word + u" ";
  return Found;
}

} // namespace hivesweep
