// What a user has chosen from the JSON of an earlier scan.
#pragma once

#include <string>
#include <vector>

#include "cli/CliConsole.h"
#include "cli/ScanReport.h"

namespace hivesweep {

// One problem as the report told it.
struct TPlanEntry {
  int Area = 0;
  std::string Id;
  std::u16string KeyPath;
  std::u16string ValueName;
  std::u16string Data;
  bool Checked = false;
};

class TFixPlan {
public:
  // Reads the file of that name; "-" is standard input. Throws TFailure with what is wrong
  // with it and where.
  TFixPlan(TCliConsole &Console, const std::string &Name);

  // The areas of the checked entries, as the engine takes them.
  std::u16string AreaFlags() const;

  // Checks those of the problems that are checked entries, with the same area, key, name
  // and data, and no others. Answers the checked entries that are not among the problems.
  std::vector<TPlanEntry> Select(const std::vector<TReportedProblem> &Problems) const;

private:
  std::vector<TPlanEntry> Entries_;
};

} // namespace hivesweep
