// What a finished scan has to tell, in the form in which it is printed.
#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "engine/Areas.h"
#include "engine/ProblemList.h"
#include "engine/ScanRegistry.h"

namespace hivesweep {

struct TReportedProblem {
  int Area = 0;
  TItemInfo *Item = nullptr;
  std::string Id;
};

// Borrows from the list and the engine that it was made of.
struct TScanReport {
  // The list must have been graded.
  TScanReport(const TListViewManage &List, const TScanRegistry &Engine, bool ShowProtected);

  const std::array<TAreaResult, AreaCount> &AreaResults;
  std::vector<TReportedProblem> Problems;       // group by group
  const std::vector<TProtectedItem> *Protected; // null: not asked for
  const std::vector<std::u16string> &BackupText;
  std::int32_t Selected; // how many of the problems are
};

// "low", "medium", "high"
std::u16string_view RiskName(TRisk Risk);

// For people. Fits into Width columns; 0: as wide as it likes.
std::string TextReport(const TScanReport &Report, int Width);

// The checked ones of the problems, in the same form: what a fix is going to do.
std::string FixText(const std::vector<TReportedProblem> &Problems, int Width);

// One object, UTF-8, each record on a line of its own. Nothing in it can make a
// terminal do anything.
std::string JsonReport(const TScanReport &Report);

// RFC 4180, UTF-8, with a header row. Protected entries follow the problems.
std::string CsvReport(const TScanReport &Report);

// The areas by themselves, with what the settings have for them, in the same forms.
struct TAreaRow {
  const TArea &Area;
  bool IsOn;
};
std::string AreasText(const std::vector<TAreaRow> &Rows, int Width);
std::string AreasJson(const std::vector<TAreaRow> &Rows);
std::string AreasCsv(const std::vector<TAreaRow> &Rows);

} // namespace hivesweep
