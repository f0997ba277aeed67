#include "platform/posix/IniText.h"

#include <algorithm>

#include "platform/Text.h"

namespace hivesweep {

namespace {

// The name in a section's header; nothing when the line is none. The first closing
// bracket ends it, or else the line does; what follows is no text of the section.
std::optional<std::u16string_view> HeaderName(std::u16string_view Line) {
  if (!Line.starts_with(u'['))
    return std::nullopt;
  return Trim(Line.substr(1, Line.find(u']') - 1));
}

TIniLine SplitLine(std::u16string_view Line) {
  const std::size_t Equals = Line.find(u'=');
  if (Equals == std::u16string_view::npos)
    return {Line, {}, false};
  return {Trim(Line.substr(0, Equals)), Trim(Line.substr(Equals + 1)), true};
}

struct TSection {
  std::vector<TIniLine> Lines;
  // Behind its last line that has something on it; npos when there is no such section.
  std::size_t End = std::u16string_view::npos;
};

TSection FindSection(std::u16string_view Text, std::u16string_view Section) {
  TSection Out;
  bool Inside = false;
  for (const std::u16string_view Whole : SplitLines(Text)) {
    const std::u16string_view Line = Trim(Whole);
    if (Line.empty())
      continue;
    if (const auto Name = HeaderName(Line)) {
      if (Inside)
        break;
      Inside = EqualNoCase(*Name, Trim(Section));
    } else if (Inside && !Line.starts_with(u';')) {
      Out.Lines.push_back(SplitLine(Line));
    }
    if (Inside)
      Out.End = static_cast<std::size_t>(Whole.data() - Text.data()) + Whole.size();
  }
  return Out;
}

// What ends the text's first line.
std::u16string LineEndOf(std::u16string_view Text) {
  const std::size_t At = Text.find_first_of(u"\r\n");
  if (At == std::u16string_view::npos || Text.substr(At).starts_with(u"\r\n"))
    return u"\r\n";
  return std::u16string(1, Text[At]);
}

// Deletes the line with this name in it.
void DeleteLine(std::u16string &Text, std::u16string_view Name) {
  const auto At = static_cast<std::size_t>(Name.data() - Text.data());
  const std::size_t Before = Text.find_last_of(u"\r\n", At);
  const std::size_t Begin = Before == std::u16string::npos ? 0 : Before + 1;
  std::size_t End = std::min(Text.find_first_of(u"\r\n", At), Text.size());
  End += Text.compare(End, 2, u"\r\n") == 0 ? 2 : End < Text.size() ? 1 : 0;
  Text.erase(Begin, End - Begin);
}

} // namespace

std::vector<TIniLine> IniLines(std::u16string_view Text, std::u16string_view Section) {
  return FindSection(Text, Section).Lines;
}

void SetIniText(std::u16string &Text, std::u16string_view Section, std::u16string_view Key,
                std::optional<std::u16string_view> Value) {
  const TSection Found = FindSection(Text, Section);
  const auto Line =
      std::find_if(Found.Lines.begin(), Found.Lines.end(), [&](const TIniLine &Candidate) {
        return Candidate.HasValue && EqualNoCase(Candidate.Name, Trim(Key));
      });
  if (!Value) {
    if (Line != Found.Lines.end())
      DeleteLine(Text, Line->Name);
    return;
  }
  if (Line != Found.Lines.end()) {
    Text.replace(static_cast<std::size_t>(Line->Value.data() - Text.data()), Line->Value.size(),
                 *Value);
    return;
  }
  const std::u16string LineEnd = LineEndOf(Text);
  const std::u16string NewLine = std::u16string(Key).append(u"=").append(*Value);
  if (Found.End != std::u16string_view::npos) {
    Text.insert(Found.End, LineEnd + NewLine);
    return;
  }
  if (!Text.empty() && Text.back() != u'\n' && Text.back() != u'\r')
    Text += LineEnd;
  Text.append(u"[").append(Section).append(u"]").append(LineEnd).append(NewLine).append(LineEnd);
}

} // namespace hivesweep
