// What all windows of the program share. Made once, when the program starts; outlives them.
#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "engine/ProblemList.h"
#include "engine/RiskGrading.h"
#include "engine/ScanRegistry.h"
#include "platform/Platform.h"
#include "ui/Language.h"

namespace hivesweep {

// What the dialog that scans and fixes is opened for.
enum class TDialogMode { Scan = 1, Fix = 2 };

struct TWorkbench {
  // The language is the one that the whole suite is set to.
  TWorkbench(TPlatform Own, std::span<const TScannerRow> Scanners);
  TWorkbench(const TWorkbench &) = delete;
  TWorkbench &operator=(const TWorkbench &) = delete;

  std::u16string Text(const TLanguageText &Text) const { return Language.TextOr(Text); }
  TRiskTexts RiskTexts() const;

  TPlatform Platform;
  TLanguage Language;
  TListViewManage Problems;
  TScanRegistry Engine;

  TDialogMode DialogMode = TDialogMode::Scan;
  std::int32_t SelectedCount = 0; // problems that are checked
  bool Busy = false;              // a scan or a fix runs
  bool LimitedRights = false;     // what belongs to the whole computer can't be removed
};

} // namespace hivesweep
