// What the engine and the repair show of themselves, on the controls of a form.
#pragma once

#include "controls/ImageProgress.h"
#include "controls/ListView.h"
#include "engine/ScanView.h"
#include "repair/ListRows.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

// Each borrows its control.

class TLabelStatus final : public TStatusLabel {
public:
  explicit TLabelStatus(TControl &Label) : Label_(Label) {}
  void SetText(std::u16string_view Text) override { Label_.SetText(Text); }

private:
  TControl &Label_;
};

// Stopped: of the run. What is left of a run that was stopped passes at once, and moves
// the bar no more.
class TBarProgress final : public TProgressBar {
public:
  TBarProgress(TImageProgress &Bar, const bool &Stopped) : Bar_(Bar), Stopped_(Stopped) {}

protected:
  void Changed() override {
    if (!Stopped_)
      Bar_.Set(Min(), Max(), Position());
  }

private:
  TImageProgress &Bar_;
  const bool &Stopped_;
};

// The rows of a plain list, none of them checked.
class TPlainRows final : public TListRows {
public:
  explicit TPlainRows(TListView &List) : List_(List) {}
  void Clear() override { List_.ClearRows(); }
  void Add(std::u16string_view Caption, std::span<const std::u16string> SubItems) override;

private:
  TListView &List_;
};

class TAreaRows final : public TAreaList {
public:
  explicit TAreaRows(TListView &List) : List_(List) {}
  bool IsChecked(int Row) const override { return List_.Checked(Row); }
  void SetChecked(int Row, bool Checked) override { List_.SetChecked(Row, Checked); }

private:
  TListView &List_;
};

} // namespace hivesweep
