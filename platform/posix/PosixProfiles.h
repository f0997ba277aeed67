#pragma once

#include "platform/IniProfiles.h"

namespace hivesweep {

class TPosixProfiles final : public TIniProfiles {
public:
  TPosixProfiles() : TIniProfiles(TUnmarked::Utf8) {}

  std::optional<TFileStamp> Stamp(std::u16string_view Path) override;
};

} // namespace hivesweep
