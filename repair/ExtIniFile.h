// INI text in memory, as language files are read. No file is touched.
#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace hivesweep {

// Section and key names are matched without regard to case; of several keys of one
// name the first counts, the others are kept.
class TExtIniFile {
public:
  // Replaces what is there. A line is trimmed; empty lines, those that begin with ";"
  // and those before the first section are dropped. "name = text" is kept as
  // "name=text"; a line without "=" as it stands.
  void LoadFromLines(std::span<const std::u16string_view> Lines);

  std::u16string ReadString(std::u16string_view Section, std::u16string_view Ident,
                            std::u16string_view Default) const;
  void WriteString(std::u16string_view Section, std::u16string_view Ident,
                   std::u16string_view Value);

  // The names of the section's keys, in file order.
  std::vector<std::u16string> ReadSection(std::u16string_view Section) const;
  // The section's lines as they are kept.
  std::vector<std::u16string> ReadSectionValues(std::u16string_view Section) const;
  // The names of all sections.
  std::vector<std::u16string> ReadSections() const;

  void EraseSection(std::u16string_view Section);
  void DeleteKey(std::u16string_view Section, std::u16string_view Ident);
  void Clear() { Sections_.clear(); }

private:
  struct TSection {
    std::u16string Name;
    std::vector<std::u16string> Lines;
  };

  const TSection *Find(std::u16string_view Name) const;
  TSection &FindOrAdd(std::u16string_view Name);

  std::vector<TSection> Sections_;
};

} // namespace hivesweep
