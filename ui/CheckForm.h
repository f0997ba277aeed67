// The dialog through which every scan and every fix runs.
#pragma once

#include <memory>
#include <string>

#include "controls/Form.h"
#include "repair/RegistryClean.h"
#include "ui/MainView.h"
#include "ui/Workbench.h"

namespace hivesweep {

class TButton;
class TImageProgress;
class TListView;
class TTimer;

class Tfrm_check : public TForm {
public:
  // For what the workbench's mode says. All must outlive it.
  Tfrm_check(TForm &Above, TWorkbench &Bench, TMainView &Main);

  // The engine's word that an area is done comes as a message; so does the end of the
  // user's session.
  TAnswer Receive(const TMessage &Message) override;

private:
  std::vector<TNamedHandler> Handlers();
  void FormCreate();
  void FormShow(TComponent &Sender);
  void FormClose(TComponent &Sender);
  void bt_scanClick(TComponent &Sender);
  void Bt_closeClick(TComponent &Sender);
  void Lv_checkMouseDown(TComponent &Sender);
  void SelectAll1Click(TComponent &Sender);
  void SelectAll2Click(TComponent &Sender);
  void Timer1Timer(TComponent &Sender);

  bool IsScan() const { return Bench_.DialogMode == TDialogMode::Scan; }
  void ShowMode();
  void CheckAll(bool Checked);
  void SaveSwitches();
  std::u16string CheckedAreas() const;
  void UpdateScanButton();

  void Run();
  void BeginRun();
  void EndRun();
  void StopRun();
  void Scan();
  void ShowFound();
  std::u16string WelcomeText(std::int32_t Count) const;
  void Fix();
  void ShowRefusal(const TFixReport &Report);
  void ShowFixed(std::int32_t Count);
  void TellNotRemoved();
  void AreaScanned(std::size_t Row, std::int32_t Count);
  void MarkNextArea(std::size_t Row);

  TWorkbench &Bench_;
  TMainView &Main_;
  std::unique_ptr<TRegistryClean> Clean_;
  std::vector<TNotRemoved> NotRemoved_; // by the last fix
  std::u16string AreaFlags_;            // of the last scan: "1" for each row that it scans
  bool StopWanted_ = false;             // of this run
  bool ScanStopped_ = false;            // the last scan, before it had looked everywhere
  std::uint32_t StartedAt_ = 0; // when the press that began it was made, in the system's ticks

  TListView &List_;
  TControl &Description_;
  TControl &Status_;
  TControl &Working_;
  TImageProgress &Progress_;
  TButton &ScanButton_;
  TTimer &Timer_;
};

} // namespace hivesweep
