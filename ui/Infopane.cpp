#include "ui/Infopane.h"

#include "ui/FormTexts.h"

namespace hivesweep {

void ShowAbout(const TForm &Above, TWorkbench &Bench) {
  Tell(Above, Bench.Language, LanguageText(u"AboutMessage"), TMessageKind::Information);
}

void NavigateToHomePage(const TForm &Above, TWorkbench &Bench) { OpenManual(Above, Bench); }

void OpenManual(const TForm &Above, TWorkbench &Bench) {
  Tell(Above, Bench.Language, LanguageText(u"HelpMissing"), TMessageKind::Warning);
}

} // namespace hivesweep
