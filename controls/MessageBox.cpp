#include "controls/MessageBox.h"

#include "controls/Form.h"
#include "controls/Win32.h"

namespace hivesweep {

bool ShowMessage(const TForm *Above, const std::u16string &Text, const std::u16string &Title,
                 TMessageKind Kind) {
  const UINT Form = Kind == TMessageKind::Question  ? MB_YESNO | MB_ICONQUESTION
                    : Kind == TMessageKind::Warning ? MB_OK | MB_ICONWARNING
                                                    : MB_OK | MB_ICONINFORMATION;
  const int Answer = MessageBoxW(Above ? Above->Handle() : nullptr, Wide(Text), Wide(Title), Form);
  return Answer == IDYES || Answer == IDOK;
}

} // namespace hivesweep
