// INI files as the profile functions of Windows read and write them, on every system.
// Those functions can't tell a file that can't be read from an empty one, and write the
// whole file for every single key.
#pragma once

#include <string>
#include <string_view>

#include "platform/Profiles.h"

namespace hivesweep {

class TIniProfiles : public TProfiles {
public:
  // Which letters the bytes of a file without a mark are: those of the system's code page,
  // or those of UTF-8 where they can be.
  enum class TUnmarked { CodePage, Utf8 };

  explicit TIniProfiles(TUnmarked Unmarked) : Unmarked_(Unmarked) {}

  TError ReadSection(std::u16string_view Path, std::u16string_view Section, TIniSection &Out) final;
  TError WriteSection(std::u16string_view Path, std::u16string_view Section,
                      std::span<const TIniChange> Changes) final;

private:
  TError Read(std::u16string_view Path, std::string &Bytes);

  const TUnmarked Unmarked_;
};

} // namespace hivesweep
