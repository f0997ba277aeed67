#include "platform/Profiles.h"

#include <utility>

#include "platform/Text.h"

namespace hivesweep {

namespace {

std::u16string_view WithoutQuotes(std::u16string_view Text) {
  if (Text.size() >= 2 && Text.front() == Text.back() &&
      (Text.front() == u'"' || Text.front() == u'\''))
    return Text.substr(1, Text.size() - 2);
  return Text;
}

} // namespace

void TIniSection::Add(TLine Line) {
  if (Line.Text)
    Keys_.try_emplace(UpperCase(Line.Name), Lines_.size());
  Lines_.push_back(std::move(Line));
}

std::optional<std::u16string_view> TIniSection::Find(std::u16string_view Key) const {
  const auto Found = Keys_.find(UpperCase(Trim(Key)));
  if (Found == Keys_.end())
    return std::nullopt;
  return WithoutQuotes(*Lines_[Found->second].Text);
}

std::u16string TIniSection::TextOr(std::u16string_view Key, std::u16string_view Default) const {
  return std::u16string(Find(Key).value_or(Default));
}

std::u16string TProfiles::ReadString(std::u16string_view Path, std::u16string_view Section,
                                     std::u16string_view Key, std::u16string_view Default) {
  TIniSection Found;
  ReadSection(Path, Section, Found);
  return Found.TextOr(Key, Default);
}

} // namespace hivesweep
