// The dialog of the backups.
#pragma once

#include <memory>
#include <string>

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/Workbench.h"

namespace hivesweep {

class TButton;
class TListView;
class TTimer;

class Tfrm_rescue : public TForm {
public:
  // All must outlive it.
  Tfrm_rescue(TForm &Above, TWorkbench &Bench);

private:
  std::vector<TNamedHandler> Handlers();
  void FormCreate();
  void FormShow(TComponent &Sender);
  void FormClose(TComponent &Sender);
  void Lv_backMouseDown(TComponent &Sender);
  void Button1Click(TComponent &Sender);
  void Button2Click(TComponent &Sender);
  void Button3Click(TComponent &Sender);
  void Timer1Timer(TComponent &Sender);

  // A restore is being begun, is under way, or is being brought to its end.
  bool IsRestoring() const { return Restoring_ || Working_; }
  void RestoreEnded();
  void TellNotRestored();
  void FillList(const std::u16string &Selected);
  std::u16string SelectedEntry() const;
  std::u16string CommandedName(int Row) const;
  bool IsBackup(std::u16string_view Name) const;
  void UpdateButtons();
  void ShowFailure(const TLanguageText &What, std::u16string_view Why);

  TWorkbench &Bench_;
  std::unique_ptr<TRegistryClean> Clean_;
  bool Restoring_ = false; // the editor has been started, and the rest is to be done
  bool Working_ = false;   // inside a call that handles messages meanwhile

  TListView &List_;
  TControl &Failure_;
  TButton &Undo_;
  TButton &Delete_;
  TTimer &Timer_;
};

} // namespace hivesweep
