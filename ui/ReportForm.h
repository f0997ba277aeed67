// The dialog that tells, row by row, what could not be done and why.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "controls/Form.h"
#include "ui/Workbench.h"

namespace hivesweep {

class TListView;

// What could not be done, and why.
struct TReportRow {
  std::u16string Path; // of a key or a file
  std::u16string Value;
  std::u16string Reason;
};

class Tfrm_report : public TForm {
public:
  // Summary stands above the rows. Above and Bench must outlive the form.
  Tfrm_report(TForm &Above, TWorkbench &Bench, std::u16string_view Summary,
              std::vector<TReportRow> Rows);

private:
  std::vector<TNamedHandler> Handlers();
  void FormShow(TComponent &Sender);
  void Lv_reportData(TListView &Sender, int Row, TListCells &Cells);
  void Lv_reportMouseDown(TComponent &Sender);
  void CopyRowClick(TComponent &Sender);
  void Bt_copyClick(TComponent &Sender);
  void Bt_closeClick(TComponent &Sender);

  void ShowReason();
  void Copy(int First, int Count);

  TWorkbench &Bench_;
  const std::vector<TReportRow> Rows_;
  TListView &List_;
};

} // namespace hivesweep
