#include "ui/FormTexts.h"

#include "controls/ImageNote.h"

namespace hivesweep {

void TFormTexts::VisitTexts(const TFormTextVisitor &Visit) {
  const auto Show = [&](TComponent &Component) {
    const bool IsEntry = dynamic_cast<const TImageNote *>(&Component) != nullptr;
    Component.VisitTexts([&](std::u16string_view Property, std::u16string &Text) {
      if (Property != u"Hint" || IsEntry)
        Visit(Component.Name(), Property, Text);
    });
  };
  Show(Form_);
  for (const auto &Component : Form_.Components())
    Show(*Component);
}

void Translate(const TLanguage &Language, TForm &Form) {
  const TLayoutPause Pause(Form);
  TFormTexts Texts(Form);
  Language.Translate(Texts);
}

bool Tell(const TForm &Above, const TLanguage &Language, const TLanguageText &Text,
          TMessageKind Kind) {
  return ShowMessage(&Above, Language.TextOr(Text), Language.TextOr(LanguageText(u"Title")), Kind);
}

} // namespace hivesweep
