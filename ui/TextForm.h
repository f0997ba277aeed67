// What the localisation sees of a window.
#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace hivesweep {

// Sees one text and may change it. Component is the name of what shows it, Property what
// it is there:
//   Caption             of forms, labels, buttons, boxes, menu and bar entries, panels
//   Hint                of an image button whose hints are shown
//   Items[i].Caption    of label notes, combo boxes and trees
//   Panels[i].Text      of status bars
//   Columns[i].Caption  of list views
using TFormTextVisitor = std::function<void(std::u16string_view Component,
                                            std::u16string_view Property, std::u16string &Text)>;

class TTextForm {
public:
  TTextForm() = default;
  TTextForm(const TTextForm &) = delete;
  TTextForm &operator=(const TTextForm &) = delete;
  virtual ~TTextForm() = default;

  virtual std::u16string Name() const = 0; // may be empty

  // Shows the visitor the form's caption, under the form's name, and then every text of
  // the components that the form owns itself, in their order; takes on what it changes.
  virtual void VisitTexts(const TFormTextVisitor &Visit) = 0;
};

} // namespace hivesweep
