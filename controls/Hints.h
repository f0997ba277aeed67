// The small windows that tell more about what lies under the mouse: a control's hint,
// or the whole of a text that its label shows shortened.
#pragma once

#include <string>

struct HWND__;

namespace hivesweep {

class TControl;
class TForm;

class THints {
public:
  explicit THints(TForm &Form);
  THints(const THints &) = delete;
  THints &operator=(const THints &) = delete;
  ~THints();

  // Takes over where the controls stand now.
  void Update();
  // What is told about a control; empty: nothing.
  static std::u16string TextOf(const TControl &Control);

private:
  void Clear();

  TForm &Form_;
  HWND__ *Window_;
};

} // namespace hivesweep
