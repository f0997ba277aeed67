// The dialog of the problems that the user does not want to see.
#pragma once

#include <memory>

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class TButton;
class TListView;

class Tfrm_ignored : public TForm {
public:
  // All must outlive it.
  Tfrm_ignored(TForm &Above, TWorkbench &Bench, TMainView &Main);

private:
  std::vector<TNamedHandler> Handlers();
  void FormCreate();
  void FormShow(TComponent &Sender);
  void FormClose(TComponent &Sender);
  void Lv_ignoredMouseDown(TComponent &Sender);
  void SelectAll1Click(TComponent &Sender);
  void SelectAll2Click(TComponent &Sender);
  void Bt_removeClick(TComponent &Sender);
  void Bt_closeClick(TComponent &Sender);

  void FillList();
  void CheckAll(bool Checked);
  std::vector<std::u16string> CheckedKeys() const;
  void UpdateRemoveButton();

  TWorkbench &Bench_;
  TMainView &Main_;
  std::unique_ptr<TRegistryClean> Clean_;
  TListView &List_;
  TButton &Remove_;
};

} // namespace hivesweep
