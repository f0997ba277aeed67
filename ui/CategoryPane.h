// The pane at the left of the main window: the categories, how many problems each has, and
// which one is shown.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "controls/ImageNote.h"
#include "controls/Label.h"
#include "engine/ProblemList.h"
#include "ui/MainTable.h"

namespace hivesweep {

class TCategoryPane {
public:
  // Of a form with the main window's table, which must outlive it.
  explicit TCategoryPane(TForm &Form);

  // The category that a component stands for: what follows the "_" in its name.
  static int CategoryOf(const TComponent &Member);

  // Marks this category alone.
  void Mark(int Category);

  // Says to aids for the blind what the labels on the entries say to the eye.
  void NameEntries();

  void ShowCounts(const TListViewManage &Problems);
  void ClearCounts();

  const std::u16string &Caption(int Category) const;
  // The number that its count label shows in parentheses; "0" when it shows none.
  std::u16string Number(int Category) const;
  // The name of its group of problems; empty for the summary, which is of all groups.
  std::u16string GroupName(int Category) const;

private:
  struct TEntry {
    TImageNote *Note;
    TLabel *Caption;
    TLabel *Count;

    void Name() const;
    void ShowCount(std::u16string_view Number) const;
  };

  const TEntry &Entry(int Category) const {
    return Entries_.at(static_cast<std::size_t>(Category - SummaryCategory));
  }

  TForm &Form_;
  std::array<TEntry, CategoryCount> Entries_{};
};

} // namespace hivesweep
