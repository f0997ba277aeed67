// The scan engine: runs the areas in their order, keeps what they find and what
// protects it, and reports as it goes.
#pragma once

#include <array>
#include <cstdint>
#include <exception>
#include <functional>
#include <memory>
#include <set>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Areas.h"
#include "engine/ExclusionFilter.h"
#include "engine/IgnoreFile.h"
#include "engine/Labels.h"
#include "engine/ProblemList.h"
#include "engine/RiskGrading.h"
#include "engine/ScanDisk.h"
#include "engine/ScanView.h"
#include "platform/Platform.h"
#include "platform/Text.h"

namespace hivesweep {

class TScanRegistry;

// Posted to the window that a scan notifies, after each area: the area's number and
// the count of problems listed for it (0 for one that did not run).
inline constexpr std::uint32_t WM_AREA_SCANNED = 0x0400 + 0x010C;

// A scanner walks its part of the registry: advances the bar, shows the engine's
// ScanPrefix and its caption in the label, and puts what it finds into the group by
// way of TScanRegistry::Report. Before each entry it tests Stopped and pumps
// messages. Answers how many problems it found, those held back included.
using TScanner = std::int32_t (*)(TScanRegistry &Engine, TStatusLabel &StatusLabel,
                                  TProgressBar &ProgressBar, TGroupItems &Group);

// One row of the table of scanners. The rows of an area stand in their call order.
struct TScannerRow {
  int Area;
  TScanner Scan;
};

// Where the settings lie. An empty path is a file that is not there.
struct TSettingsPaths {
  std::u16string MainIni;
  std::u16string IgnoreIni;
};

// One problem as a scanner found it.
struct TFinding {
  TProblemType Label = TProblemType::MissingPath;
  TFixAction Action = TFixAction::RemoveValue;
  int Area = 0;
  std::u16string KeyPath;
  std::u16string ValueName;
  std::u16string Data;
  std::int32_t ItemKind = 0;
  std::vector<std::u16string> BackupLines; // in the forms of ExportLines.h
};

// What became of an area in the last scan.
struct TAreaResult {
  bool Scanned = false;
  std::int32_t Found = 0;     // what its scanners found
  std::int32_t Listed = 0;    // what of it is in the problem list
  std::int32_t Protected = 0; // what of it the filter held back
  std::u16string Failure;     // why the area was broken off; empty when it was not
};

// An entry that the filter held back, and why.
struct TProtectedItem {
  int Area = 0;
  std::u16string KeyPath;
  std::u16string ValueName;
  std::u16string Data;
  TProtection Protection;
};

// A key that is there and could not be read.
struct TUnreadableKey {
  std::u16string KeyPath;
  TRegStatus Status = TRegStatus::Failed;
};

class TScanRegistry {
public:
  // Everything given must outlive the engine. Captions become the Labels, which
  // have one entry for each TProblemType.
  TScanRegistry(TPlatform &Platform, TListViewManage &Problems, TSettingsPaths Settings,
                std::span<const TScannerRow> Scanners, std::vector<std::u16string> Captions);

  // Scans and answers how many problems are listed. AreaFlags has one character for
  // each area, "1" to scan it; when it is empty the settings file decides. A call
  // while a scan runs answers 0 and changes nothing.
  std::int32_t StartScan(TWindowHandle NotifyWindow, std::u16string_view AreaFlags,
                         TStatusLabel &StatusLabel, std::u16string_view ScanPrefix,
                         TProgressBar &ProgressBar);

  // The same, and writes "12  problem[s] found" into ResultLabel.
  void ScanAndReport(TWindowHandle NotifyWindow, std::u16string_view AreaFlags,
                     std::u16string_view ScanPrefix, TProgressBar &ProgressBar,
                     TStatusLabel &StatusLabel, TStatusLabel &ResultLabel);

  std::int32_t RunScan(TWindowHandle NotifyWindow, std::u16string_view AreaFlags,
                       TProgressBar &ProgressBar, TStatusLabel &StatusLabel);

  // The number of the area that is being scanned; 0 between areas and scans.
  int CurrentArea() const { return CurrentArea_; }

  // How many entries the scanners that advance the bar once per entry will meet.
  std::int32_t CountComKeys();
  std::int32_t CountSharedDlls();

  // Takes the names of HKEY_CLASSES_ROOT into the two lists below, and answers how
  // many they are.
  std::int32_t CountFileTypes();

  // The scan leaves each scanner at its next entry. Before a scan it has no effect.
  void Stop() {
    Stopped = true;
    ++Stops_;
  }

  // The problem may be listed. Only while a scan runs.
  bool IsAllowed(std::u16string_view KeyPath, std::u16string_view ValueName,
                 std::u16string_view Data);
  bool IsIgnored(std::u16string_view KeyPath);

  // Grades the problems of the view (see GradeRisks), while messages are handled and the
  // bar moves, and answers how many are selected. After a Stop the rest is not selected.
  // Nothing is selected when the scan did without settings that could not be read.
  std::int32_t GradeProblems(const TRiskTexts &Texts, TProgressBar &ProgressBar);

  // ---- what scanners use --------------------------------------------------------
  // Lists the finding in the group, with its backup lines, unless the filter holds
  // it back, or its texts would make a fix delete something else.
  void Report(TGroupItems &Group, TFinding Finding);

  // Opens a key for a scanner, by its path as TRegistry takes it, or one below an open
  // key; null when that can't be done. A key that is there and can't be read is noted
  // in UnreadableKeys, a subkey by ParentPath, which ends in a backslash, and its name.
  std::unique_ptr<TRegKey> OpenKey(TRegRoot Root, std::u16string_view Path);
  std::unique_ptr<TRegKey> OpenSubkey(TRegKey &Parent, std::u16string_view ParentPath,
                                      std::u16string_view Name);

  // Takes a failed call on a key that is there into UnreadableKeys, once for each key.
  void NoteUnreadable(std::u16string_view KeyPath, TRegStatus Status);

  // This path has been noted so.
  bool IsUnreadable(std::u16string_view KeyPath) const;

  // Puts ScanPrefix and a label's caption into the status label.
  void ShowStatus(TStatusLabel &StatusLabel, TProblemType Label) const;
  const std::u16string &Caption(TProblemType Label) const {
    return Labels[static_cast<std::size_t>(Label)];
  }
  // Handles messages. What a handler throws is no failure of an area: the scan stops, comes
  // to its end in order, and throws it to whoever started it.
  void Pump();
  TScanDisk &Disk() { return Disk_; }
  TPlatform &Platform() { return Platform_; }

  // ---- what the last scan found ---------------------------------------------------
  const std::array<TAreaResult, AreaCount> &AreaResults() const { return AreaResults_; }
  const std::vector<TProtectedItem> &ProtectedItems() const { return ProtectedItems_; }
  const std::vector<TUnreadableKey> &UnreadableKeys() const { return UnreadableKeys_; }

  // Why the settings file (its exact pairs) or the ignore list could not be read, once for
  // each. What the user wants to be left alone may then be among the problems.
  const std::vector<TError> &UnreadSettings() const { return UnreadSettings_; }

  bool Ready = true; // no scan runs
  TWindowHandle NotifyWindow = 0;
  const std::vector<std::u16string> Labels;
  std::vector<std::u16string> BackupText; // the backup lines of all problems listed
  std::u16string LastFixFlag;             // when the last fix was, as the settings have it
  bool Stopped = false;
  std::u16string ScanPrefix;
  std::int32_t KindKey = 0;                          // 1 from the first scan on
  std::int32_t KindValue = 0;                        // 2
  bool IsWow64 = false;                              // a 32-bit program on a 64-bit system
  std::u16string WinDir;                             // without a trailing backslash
  std::vector<std::u16string> UninstallNames;        // of the scan's uninstall entries
  std::u16string TempDir;                            // with one; while the deep scan runs
  const std::vector<std::u16string> ScannedAreaKeys; // what the deep scan leaves out
  std::vector<std::u16string> ExtensionNames;        // while a scan runs: those with a dot
  std::vector<std::u16string> FileTypeNames;         // in front, and all others

  // Earlier versions kept their backups beside the program, and tools of the suite
  // still expect two folders there. Nothing is written into them.
  void MakeBackupFolders();
  bool MakesFolders = true; // a scan does; off for one that must not change anything

private:
  TIniSection ReadSettings(std::u16string_view Section);
  void NoteUnread(const TError &Failure);
  void ThrowHandlerError();
  std::array<bool, AreaCount> ReadAreaFlags(std::u16string_view AreaFlags);
  std::int32_t EstimateWork();
  TRegCounts CountEntries(TRegRoot Root, std::u16string_view Path);
  std::int32_t CountSubkeys(TRegRoot Root, std::u16string_view Path);
  void HoldBack(std::u16string_view KeyPath, std::u16string_view ValueName,
                std::u16string_view Data, TProtection Protection);
  std::int32_t RunArea(const TArea &Area, TStatusLabel &StatusLabel, TProgressBar &ProgressBar);

  TPlatform &Platform_;
  TListViewManage &Problems_;
  const TSettingsPaths Settings_;
  const std::span<const TScannerRow> Scanners_;
  TScanDisk Disk_;
  TIgnoreFile IgnoreFile_;
  std::unique_ptr<TExclusionFilter> Filter_; // while a scan runs
  std::exception_ptr HandlerError_;          // the first of a scan
  std::array<TAreaResult, AreaCount> AreaResults_;
  std::vector<TProtectedItem> ProtectedItems_;
  std::vector<TUnreadableKey> UnreadableKeys_;
  std::set<std::u16string, TNameLess> UnreadablePaths_; // of these keys
  std::vector<TError> UnreadSettings_;
  std::uint32_t Stops_ = 0; // calls of Stop
  int CurrentArea_ = 0;     // the one that runs; 0: none
};

} // namespace hivesweep
