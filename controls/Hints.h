// The small windows that tell more about what lies under the mouse: a control's hint,
// or the whole of a text that its label shows shortened.
#pragma once

#include "controls/SystemTypes.h"

namespace hivesweep {

class TForm;
struct TMessage;

class THints {
public:
  explicit THints(TForm &Form);
  THints(const THints &) = delete;
  THints &operator=(const THints &) = delete;
  ~THints();

  // Takes over where the controls stand now.
  void Update();
  // Answers the system's question for a text, when the message is one.
  bool Answer(const TMessage &Message);

private:
  void Clear();

  TForm &Form_;
  HWND__ *Window_;
};

} // namespace hivesweep
