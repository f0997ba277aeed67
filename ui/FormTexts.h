// What ties the forms to the user's language.
#pragma once

#include "controls/Form.h"
#include "controls/MessageBox.h"
#include "ui/Language.h"
#include "ui/TextForm.h"

namespace hivesweep {

// A form, as the localisation sees it. Of hints it shows those of the pane's entries alone.
class TFormTexts final : public TTextForm {
public:
  explicit TFormTexts(TForm &Form) : Form_(Form) {}

  std::u16string Name() const override { return Form_.Name(); }
  void VisitTexts(const TFormTextVisitor &Visit) override;

private:
  TForm &Form_;
};

// Puts the language's texts into the form and lays it out once.
void Translate(const TLanguage &Language, TForm &Form);

// A message box under the program's name. True for OK and Yes.
bool Tell(const TForm &Above, const TLanguage &Language, const TLanguageText &Text,
          TMessageKind Kind);

} // namespace hivesweep
