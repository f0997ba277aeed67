// The settings file: which areas are scanned, when the last fix was, and the statistics.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "engine/Areas.h"
#include "platform/Platform.h"

namespace hivesweep {

using TAreaSwitches = std::array<bool, AreaCount>; // by area number - 1

// What has been done so far, as the file has it.
struct TSummary {
  std::u16string LastScan;
  std::u16string LastClean;
  std::int64_t Total = 0; // problems fixed
};

// The switches as the user has set them: on, but for the deep scan, where the
// settings file says nothing. Any number but 0 switches an area on.
TAreaSwitches ReadAreaSwitches(TProfiles &Profiles, std::u16string_view MainIniPath);

// Reading and writing. Writing enters SettingsLock; it answers false when the file
// could not be written.
class TSettings {
public:
  // An empty path is a file that is not there and can't be made.
  TSettings(TPlatform &Platform, std::u16string MainIniPath)
      : Platform_(Platform), Path_(std::move(MainIniPath)) {}

  bool WriteAreaSwitches(const TAreaSwitches &Switches);

  // "07/15/2009 14:30:05": the time of a fix.
  bool WriteLastFix();

  // Count is what a fix has fixed; it is added to the total, which ends at the largest number.
  // A total that is no number stays as it is, and the answer is false. A scan's count is
  // not kept.
  bool RecordStatistics(std::int32_t Count, bool IsScan);

  // NoneText stands for a date that there is not.
  TSummary Summary(std::u16string_view NoneText) const;

private:
  bool Write(std::u16string_view Section, std::span<const TIniChange> Changes);

  TPlatform &Platform_;
  const std::u16string Path_;
};

} // namespace hivesweep
