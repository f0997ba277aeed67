#include "platform/IniText.h"

#include <algorithm>
#include <map>
#include <utility>

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

// The first key of that name; null when there is none.
const TIniLine *FindKey(const TSection &Section, std::u16string_view Key) {
  const auto Found =
      std::find_if(Section.Lines.begin(), Section.Lines.end(), [&](const TIniLine &Line) {
        return Line.HasValue && EqualNoCase(Line.Name, Trim(Key));
      });
  return Found == Section.Lines.end() ? nullptr : &*Found;
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

void SetIniTexts(std::u16string &Text, std::u16string_view Section,
                 std::span<const TIniChange> Changes) {
  const TSection Found = FindSection(Text, Section);
  std::map<std::size_t, std::pair<std::size_t, std::u16string_view>> Edits; // place, size, text
  const std::u16string LineEnd = LineEndOf(Text);
  std::u16string NewLines;
  for (const TIniChange &Change : Changes) {
    if (!Change.Text)
      continue;
    if (const TIniLine *const Line = FindKey(Found, Change.Key))
      Edits[static_cast<std::size_t>(Line->Value.data() - Text.data())] = {Line->Value.size(),
                                                                           *Change.Text};
    else
      NewLines.append(LineEnd).append(Change.Key).append(u"=").append(*Change.Text);
  }
  const std::size_t End = std::min(Found.End, Text.size());
  std::u16string Out;
  std::size_t Taken = 0;
  for (const auto &[At, Edit] : Edits) {
    Out.append(Text, Taken, At - Taken).append(Edit.second);
    Taken = At + Edit.first;
  }
  Out.append(Text, Taken, End - Taken);
  if (Found.End == std::u16string_view::npos && !NewLines.empty()) {
    if (!Out.empty() && Out.back() != u'\n' && Out.back() != u'\r')
      Out += LineEnd;
    Out.append(u"[").append(Section).append(u"]");
    NewLines += LineEnd;
  }
  Text = Out.append(NewLines).append(Text, End, std::u16string::npos);

  for (const TIniChange &Change : Changes)
    if (!Change.Text) {
      const TSection Now = FindSection(Text, Section);
      if (const TIniLine *const Line = FindKey(Now, Change.Key))
        DeleteLine(Text, Line->Name);
    }
}

} // namespace hivesweep
