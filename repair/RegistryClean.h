// The program's settings, and the folders they live in.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "engine/Areas.h"
#include "engine/ScanView.h"
#include "platform/Platform.h"
#include "repair/AppFrame.h"

namespace hivesweep {

using TAreaSwitches = std::array<bool, AreaCount>; // by area number - 1

// The switches as the user has set them: on, but for the deep scan, where the
// settings file says nothing. Any number but 0 switches an area on.
TAreaSwitches ReadAreaSwitches(TProfiles &Profiles, std::u16string_view MainIniPath);

// The rows of check boxes that show the areas, in the areas' order.
class TAreaList {
public:
  TAreaList() = default;
  TAreaList(const TAreaList &) = delete;
  TAreaList &operator=(const TAreaList &) = delete;
  virtual ~TAreaList() = default;

  virtual void SetChecked(int Row, bool Checked) = 0;
};

class TRegistryClean {
public:
  // Creates the data folders that are missing; that one can't be created shows when
  // something is written into it.
  explicit TRegistryClean(TPlatform &Platform);

  void LoadAreaSwitches(TAreaList &List) const;

  // When the last scan and the last fix were, and how many problems have been fixed
  // in all. NoneText stands for a date that there is not.
  void LoadSummary(TStatusLabel &LastScan, TStatusLabel &LastClean, TStatusLabel &Total,
                   std::u16string_view NoneText) const;

  const TAppFrame Frame;
  const TDataPaths Paths;

private:
  void CreateFolders();

  TPlatform &Platform_;
};

} // namespace hivesweep
