#include "repair/ExtIniFile.h"

#include <algorithm>
#include <map>

#include "platform/Text.h"

namespace hivesweep {

namespace {

// The name of a kept line; nothing for a line without "=", which has none.
std::u16string_view NameOf(std::u16string_view Line) {
  const std::size_t Equals = Line.find(u'=');
  return Equals == std::u16string_view::npos ? std::u16string_view() : Line.substr(0, Equals);
}

template <typename TLines> auto FindLine(TLines &Lines, std::u16string_view Ident) {
  return std::find_if(Lines.begin(), Lines.end(), [&](const std::u16string &Line) {
    return !Ident.empty() && EqualNoCase(NameOf(Line), Ident);
  });
}

std::u16string Assignment(std::u16string_view Name, std::u16string_view Value) {
  return std::u16string(Name) + u"=" + std::u16string(Value);
}

} // namespace

void TExtIniFile::LoadFromLines(std::span<const std::u16string_view> Lines) {
  Clear();
  // A file of nothing but headers takes no longer than another.
  std::map<std::u16string_view, std::size_t, TNameLess> Places;
  TSection *Current = nullptr;
  for (const std::u16string_view Stored : Lines) {
    const std::u16string_view Line = Trim(Stored);
    if (Line.empty() || Line.starts_with(u';'))
      continue;
    if (Line.starts_with(u'[') && Line.ends_with(u']')) {
      const std::u16string_view Name = Trim(Line.substr(1, Line.size() - 2));
      const auto [Place, IsNew] = Places.try_emplace(Name, Sections_.size());
      if (IsNew)
        Sections_.push_back({std::u16string(Name), {}});
      Current = &Sections_[Place->second];
    } else if (Current) {
      const std::size_t Equals = Line.find(u'=');
      Current->Lines.push_back(
          Equals == std::u16string_view::npos
              ? std::u16string(Line)
              : Assignment(Trim(Line.substr(0, Equals)), Trim(Line.substr(Equals + 1))));
    }
  }
}

const TExtIniFile::TSection *TExtIniFile::Find(std::u16string_view Name) const {
  const auto Found = std::find_if(Sections_.begin(), Sections_.end(), [&](const TSection &Section) {
    return EqualNoCase(Section.Name, Name);
  });
  return Found == Sections_.end() ? nullptr : &*Found;
}

TExtIniFile::TSection &TExtIniFile::FindOrAdd(std::u16string_view Name) {
  if (const TSection *Known = Find(Name))
    return Sections_[static_cast<std::size_t>(Known - Sections_.data())];
  return Sections_.emplace_back(TSection{std::u16string(Name), {}});
}

std::u16string TExtIniFile::ReadString(std::u16string_view Section, std::u16string_view Ident,
                                       std::u16string_view Default) const {
  if (const TSection *Known = Find(Section))
    if (const auto Line = FindLine(Known->Lines, Ident); Line != Known->Lines.end())
      return Line->substr(Ident.size() + 1);
  return std::u16string(Default);
}

void TExtIniFile::WriteString(std::u16string_view Section, std::u16string_view Ident,
                              std::u16string_view Value) {
  std::vector<std::u16string> &Lines = FindOrAdd(Section).Lines;
  if (const auto Line = FindLine(Lines, Ident); Line != Lines.end())
    *Line = Assignment(Ident, Value);
  else
    Lines.push_back(Assignment(Ident, Value));
}

std::vector<std::u16string> TExtIniFile::ReadSection(std::u16string_view Section) const {
  std::vector<std::u16string> Names;
  if (const TSection *Known = Find(Section))
    for (const std::u16string &Line : Known->Lines)
      if (const std::u16string_view Name = NameOf(Line); !Name.empty())
        Names.emplace_back(Name);
  return Names;
}

std::vector<std::u16string> TExtIniFile::ReadSectionValues(std::u16string_view Section) const {
  const TSection *Known = Find(Section);
  return Known ? Known->Lines : std::vector<std::u16string>();
}

std::vector<std::u16string> TExtIniFile::ReadSections() const {
  std::vector<std::u16string> Names;
  for (const TSection &Section : Sections_)
    Names.push_back(Section.Name);
  return Names;
}

void TExtIniFile::EraseSection(std::u16string_view Section) {
  if (const TSection *Known = Find(Section))
    Sections_.erase(Sections_.begin() + (Known - Sections_.data()));
}

void TExtIniFile::DeleteKey(std::u16string_view Section, std::u16string_view Ident) {
  if (!Find(Section))
    return;
  std::vector<std::u16string> &Lines = FindOrAdd(Section).Lines;
  if (const auto Line = FindLine(Lines, Ident); Line != Lines.end())
    Lines.erase(Line);
}

} // namespace hivesweep
