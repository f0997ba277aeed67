#include "ui/Language.h"

#include <cstddef>

#include "platform/DiskFile.h"

namespace hivesweep {

namespace {

constexpr std::u16string_view Extension = u".lng";
constexpr std::u16string_view English = u"English";

// A hundred times what a language file has. It keeps a file that is none from filling
// the memory.
constexpr std::size_t LargestFile = 2u << 20;

bool IsLanguageFile(const TFolderEntry &Entry) {
  const std::size_t Size = Entry.Name.size();
  return !Entry.IsFolder && Size >= Extension.size() &&
         EqualNoCase(Entry.Name.substr(Size - Extension.size()), Extension);
}

std::u16string Joined(std::u16string_view Front, std::u16string_view Back) {
  return std::u16string(Front).append(Back);
}

} // namespace

TLanguage::TLanguage(TPlatform &Platform, std::u16string_view Section)
    : Platform_(Platform), Frame_(*Platform.Folders), Section_(Section),
      LanguageDir_(JoinPath(Frame_.ProgramFolder, u"Toolbox_Language")) {
  EnumerateLanguages();
}

void TLanguage::EnumerateLanguages() {
  std::vector<std::u16string> Names;
  Platform_.Files->List(LanguageDir_, [&](const TFolderEntry &Entry) {
    if (IsLanguageFile(Entry))
      Names.emplace_back(Entry.Name.substr(0, Entry.Name.size() - Extension.size()));
    return true;
  });
  for (const std::u16string &Name : Names) {
    LanguageNames_.push_back(Name);
    CurrentIndex_ = static_cast<std::int32_t>(LanguageNames_.size()) - 1;
    SetLanguage(Name);
    DisplayNames_.push_back(ReadFileString(u"Main", u"DisplayName", u""));
  }
}

std::u16string TLanguage::ReadSuiteLanguage() const {
  // The suite's own settings, one folder above this tool's.
  return Platform_.Profiles->ReadString(Frame_.UserAppDataFolder +
                                            u"\\Orvane\\Tallowmere V4\\Main.ini",
                                        u"Main", u"Language", English);
}

std::u16string TLanguage::FilePath(std::size_t Index) const {
  return JoinPath(LanguageDir_, Joined(LanguageNames_[Index], Extension));
}

std::optional<std::size_t> TLanguage::FindLanguage(std::u16string_view Name) const {
  for (std::size_t Index = 0; Index < LanguageNames_.size(); ++Index)
    if (EqualNoCase(LanguageNames_[Index], Name)) {
      // Where the disk doesn't answer, reading will tell.
      if (NoSuchFile(*Platform_.Files, FilePath(Index)))
        return std::nullopt;
      return Index;
    }
  return std::nullopt;
}

void TLanguage::SetLanguage(std::u16string_view Name) {
  auto Found = FindLanguage(Name);
  if (!Found)
    Found = FindLanguage(English);
  if (!Found)
    return;
  CurrentIndex_ = static_cast<std::int32_t>(*Found);
  LoadFile(FilePath(*Found));
}

void TLanguage::LoadFile(const std::u16string &Path) {
  std::string Bytes;
  ReadWholeFile(Path, Bytes, LargestFile); // leaves nothing where it fails
  const std::u16string Content = DecodeTextFile(Bytes);
  LanguageFile_.LoadFromLines(SplitLines(Content));

  Texts_.clear();
  for (const std::u16string &Line : LanguageFile_.ReadSectionValues(Section_ + u"_M")) {
    const std::size_t Equals = Line.find(u'=');
    if (Equals != std::u16string::npos)
      Texts_.emplace(Line.substr(0, Equals), Line.substr(Equals + 1)); // the first counts
  }
}

std::u16string TLanguage::Text(std::u16string_view Key) const { return TextOr(Key, {}); }

std::u16string TLanguage::TextOr(std::u16string_view Key, std::u16string_view Default) const {
  const auto Found = Texts_.find(Key);
  return Found == Texts_.end() ? std::u16string(Default) : Found->second;
}

std::u16string TLanguage::Words(const TError &Error) const {
  return ErrorWords(
      Error, [this](const TErrorText &Text) { return TextOr(Text.Key, Text.English); },
      [this](std::uint32_t Number) {
        const TSystemErrorText *Found = std::begin(SystemErrorTexts);
        while (Found->Number != Number && Found->Number != 0)
          ++Found;
        return WithNumber(TextOr(Found->Text), Number);
      });
}

std::u16string TLanguage::ReadFileString(std::u16string_view Section, std::u16string_view Key,
                                         std::u16string_view Default) const {
  return LanguageFile_.ReadString(Section, Key, Default);
}

void TLanguage::Translate(TTextForm &Form) const {
  const std::u16string Name = Form.Name();
  if (Name.empty())
    return;
  const std::u16string FormSection = Section_ + u"_" + Name;
  Form.VisitTexts(
      [&](std::u16string_view Component, std::u16string_view Property, std::u16string &Text) {
        Text = ReadFileString(FormSection, Joined(Component, u".").append(Property), Text);
      });
}

void TLanguage::TranslateAll(std::span<TTextForm *const> Forms) const {
  for (TTextForm *const Form : Forms)
    Translate(*Form);
}

std::u16string WithNumber(std::u16string_view Text, std::uint64_t Number) {
  std::u16string Out(Text);
  const std::size_t At = Out.find(u"%d");
  return At == std::u16string::npos ? Out : Out.replace(At, 2, ToDecimal(Number));
}

} // namespace hivesweep
