// The texts of the user's language. Every text has its English in the program; a
// language file replaces what it knows, and nothing that it lacks is ever an error.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/ErrorTexts.h"
#include "platform/Platform.h"
#include "platform/Text.h"
#include "repair/AppFrame.h"
#include "repair/ExtIniFile.h"
#include "ui/LanguageKeys.h"
#include "ui/TextForm.h"

namespace hivesweep {

// A language file NAME.lng is INI text: [Main] with its DisplayName, [SECTION_M] with
// single texts, and [SECTION_FORM] with those of a form's components. Names of sections
// and keys are matched without regard to case.
class TLanguage {
public:
  // Section is the tool's name in language files. Lists the files of the folder
  // "Toolbox_Language" beside the program and loads each of them once, so that the last
  // one stays loaded until SetLanguage. The platform must outlive the object.
  TLanguage(TPlatform &Platform, std::u16string_view Section);

  // The name of the language that the whole suite is set to; "English" when it is not.
  std::u16string ReadSuiteLanguage() const;

  // Loads the language of that name, or else English; without a file of either nothing
  // changes. A file that is there and can't be read, or is larger than any language
  // file, is as an empty one.
  void SetLanguage(std::u16string_view Name);

  // A single text; empty when the language lacks it.
  std::u16string Text(std::u16string_view Key) const;

  // A single text, which may be empty, or Default when the language lacks it.
  std::u16string TextOr(std::u16string_view Key, std::u16string_view Default) const;
  std::u16string TextOr(const TLanguageText &Text) const { return TextOr(Text.Key, Text.English); }

  // A failure and its causes as a sentence.
  std::u16string Words(const TError &Error) const;

  // Any text of the loaded file.
  std::u16string ReadFileString(std::u16string_view Section, std::u16string_view Key,
                                std::u16string_view Default) const;

  // Puts the language's texts in place of what the form shows; what the language lacks
  // stays. A form without a name is left alone.
  void Translate(TTextForm &Form) const;

  // All forms of the program, in their order.
  void TranslateAll(std::span<TTextForm *const> Forms) const;

  // The index of the loaded language among the names; -1 when there is none.
  std::int32_t CurrentIndex() const { return CurrentIndex_; }
  const std::u16string &LanguageDir() const { return LanguageDir_; } // no separator at its end
  // The language files without ".lng", in the disk's order, and how each language
  // calls itself.
  const std::vector<std::u16string> &LanguageNames() const { return LanguageNames_; }
  const std::vector<std::u16string> &DisplayNames() const { return DisplayNames_; }
  const TExtIniFile &LanguageFile() const { return LanguageFile_; } // the loaded one

private:
  void EnumerateLanguages();
  std::u16string FilePath(std::size_t Index) const;
  // Of a language whose file is there.
  std::optional<std::size_t> FindLanguage(std::u16string_view Name) const;
  void LoadFile(const std::u16string &Path);

  TPlatform &Platform_;
  const TAppFrame Frame_;
  const std::u16string Section_;
  std::u16string LanguageDir_;
  std::int32_t CurrentIndex_ = -1;
  std::vector<std::u16string> LanguageNames_;
  std::vector<std::u16string> DisplayNames_;
  TExtIniFile LanguageFile_;
  std::map<std::u16string, std::u16string, TNameLess> Texts_;
};

// Text with Number in place of its first "%d". A translator's text is never a format
// for printf: whatever else stands in it is only text.
std::u16string WithNumber(std::u16string_view Text, std::uint64_t Number);

} // namespace hivesweep
