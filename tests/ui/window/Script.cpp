#include "tests/ui/window/Script.h"

#include "controls/Win32.h"

namespace hivesweep {

namespace {

std::vector<TScriptStep> Steps;
std::size_t Next = 0;
bool Acting = false;
UINT_PTR ScriptTimer = 0;

void CALLBACK PlayStep(HWND, UINT, UINT_PTR, DWORD) {
  if (Acting || Next == Steps.size())
    return;
  auto *Form = dynamic_cast<TForm *>(TWindowControl::Of(GetActiveWindow()));
  const TScriptStep &Step = Steps[Next];
  if (!Form || Form->Name() != Step.Form || (Step.Ready && !Step.Ready(*Form)))
    return;
  ++Next;
  Acting = true; // what it does may wait for messages, and the timer comes with them
  Step.Act(*Form);
  Acting = false;
}

} // namespace

TScript::TScript(std::vector<TScriptStep> NewSteps) {
  Steps = std::move(NewSteps);
  Next = 0;
  Acting = false;
  ScriptTimer = SetTimer(nullptr, 0, 10, PlayStep);
}

TScript::~TScript() { KillTimer(nullptr, ScriptTimer); }

bool TScript::Done() const { return Next == Steps.size() && !Acting; }

} // namespace hivesweep
