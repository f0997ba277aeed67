// INI files on a system that has no functions for them, read as Windows reads
// them. Bytes without a mark are UTF-8 when they can be (see DecodeTextFile).
#pragma once

#include "platform/Profiles.h"

namespace hivesweep {

class TPosixProfiles final : public TProfiles {
public:
  std::u16string ReadString(std::u16string_view Path, std::u16string_view Section,
                            std::u16string_view Key, std::u16string_view Default) override;
  std::vector<std::u16string> KeyNames(std::u16string_view Path,
                                       std::u16string_view Section) override;
  std::vector<std::u16string> Lines(std::u16string_view Path, std::u16string_view Section) override;
  bool WriteString(std::u16string_view Path, std::u16string_view Section, std::u16string_view Key,
                   std::optional<std::u16string_view> Text) override;
  std::optional<TFileStamp> Stamp(std::u16string_view Path) override;
};

} // namespace hivesweep
