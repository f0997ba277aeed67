// A user who works through dialogs while the program waits in them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "controls/Form.h"

namespace hivesweep {

// Waits until the form of that name is in front and Ready; then acts. Without Ready it acts
// as soon as the form is there.
struct TScriptStep {
  std::u16string Form;
  std::function<void(TForm &)> Act;
  std::function<bool(TForm &)> Ready = {};
};

// Plays its steps one after the other while messages are handled; one at a time may exist.
class TScript {
public:
  explicit TScript(std::vector<TScriptStep> Steps);
  TScript(const TScript &) = delete;
  TScript &operator=(const TScript &) = delete;
  ~TScript();

  bool Done() const;
};

} // namespace hivesweep
