// The upper part of the main window: what is known of a category, or of one problem.
#pragma once

#include <string>
#include <string_view>

#include "controls/Label.h"
#include "engine/ProblemList.h"
#include "repair/RegistryClean.h"

namespace hivesweep {

class TDetailsArea {
public:
  // Of a form with the main window's table, which must outlive it.
  explicit TDetailsArea(TForm &Form);

  // The statistics of all scans and fixes. NoneText: where there is no date.
  void ShowSummary(std::u16string_view Title, const TRegistryClean &Clean,
                   std::u16string_view NoneText);
  void ShowCategory(std::u16string_view Title, std::u16string_view Description);
  // Keeps the problem's texts and nothing else of it.
  void ShowProblem(const TItemInfo &Item);

  // The number of problems in the category.
  void SetCount(std::u16string_view Number) { Count_.SetText(Number); }
  void SetWelcome(std::u16string_view Text) { Welcome_.SetText(Text); }

  // Whether categories show their descriptions.
  bool ShowsDescriptions() const { return ShowsDescriptions_; }
  void ShowDescriptions(bool Shown);

  // Of the problem that is shown; HasProblem: one is.
  bool HasProblem() const { return Text_.IsLink(); }
  const std::u16string &KeyPath() const { return Text_.Text(); }
  const std::u16string &Data() const { return Data_.Text(); }

private:
  enum class TKindShown { Summary, Category, Problem };

  void Arrange(TKindShown Kind);

  TForm &Form_;
  TLabel &Title_;
  TLabel &Count_;
  TLabel &Welcome_;
  TLabel &Text_; // a description, or the path of a problem as a link
  TLabel &Value_;
  TLabel &Data_;
  bool ShowsDescriptions_ = true;
};

} // namespace hivesweep
