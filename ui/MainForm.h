// The program's one main window: the categories of problems, the problems themselves, and
// what can be done about them. It shows the problem list and leaves scans and fixes to its
// dialogs.
#pragma once

#include "controls/Form.h"
#include "controls/ListView.h"
#include "controls/StatusBar.h"
#include "controls/Timer.h"
#include "repair/RegistryClean.h"
#include "ui/CategoryPane.h"
#include "ui/DetailsArea.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class Tfrm_main : public TForm, public TMainView {
public:
  // Both must outlive it.
  Tfrm_main(TLook &Look, TWorkbench &Bench);

  void BeginRun() override;
  void ClearCounts() override;
  void EndRun(bool Scanned) override;
  void SetWelcome(std::u16string_view Text) override { Details_.SetWelcome(Text); }
  void RefreshCounts() override;

  // F1 opens the manual.
  TAnswer Receive(const TMessage &Message) override;

private:
  std::vector<TNamedHandler> Handlers();

  void FormShow(TComponent &Sender);
  void ImageNote_1Click(TComponent &Sender);
  void dxBarButton7Click(TComponent &Sender);
  void dxBarButton8Click(TComponent &Sender);
  void dxBarButton6Click(TComponent &Sender);
  void dxBarLargeButton4Click(TComponent &Sender);
  void dxBarButton2Click(TComponent &Sender);
  void dxBarButton19Click(TComponent &Sender);
  void dxBarButton11Click(TComponent &Sender);
  void dxBarButton10Click(TComponent &Sender);
  void dxBarButton9Click(TComponent &Sender);
  void PopupMenu1Popup(TComponent &Sender);
  void checkall1Click(TComponent &Sender);
  void Nonechecked1Click(TComponent &Sender);
  void InverseSelection1Click(TComponent &Sender);
  void CheckBox_selectallMouseUp(TComponent &Sender);
  void Lv_problemsData(TListView &Sender, int Row, TListCells &Cells);
  void Lv_problemsClick(TComponent &Sender);
  void Lv_problemsColumnClick(TListView &Sender, int Column);
  void Lv_problemsCustomDrawItem(TListView &Sender, int Row, TRowLook &Look);
  void Jumptoentry1Click(TComponent &Sender);
  void Lab_msClick(TComponent &Sender);
  void IgnoredProblem1Click(TComponent &Sender);
  void Timer1Timer(TComponent &Sender);

  // ---- categories and rows -------------------------------------------------------------
  void ShowCategory(int Category, bool Anew);
  void ShowCategoryDetails();
  void RebuildView();
  // Of a row that the list has; null: there is none.
  TItemInfo *ItemOf(int Row) const;
  void SelectItem(const TItemInfo *Item);
  void ShowSelected();

  // ---- selection for fixing ---------------------------------------------------------------
  void SelectionChanged();
  void ShowSelection();
  void ShowSelectAll();
  void ShowTotal();

  void OpenEntry(std::u16string_view KeyPath, std::u16string_view Data);

  TWorkbench &Bench_;
  TRegistryClean Clean_;
  TCategoryPane Pane_;
  TDetailsArea Details_;
  TListView &List_;
  TStatusBar &Status_;
  TTimer &Timer_;
  int Category_ = SummaryCategory; // the one that is shown
};

} // namespace hivesweep
