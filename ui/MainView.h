// What the dialogs change in the main window.
#pragma once

#include <string_view>

namespace hivesweep {

class TMainView {
public:
  TMainView() = default;
  TMainView(const TMainView &) = delete;
  TMainView &operator=(const TMainView &) = delete;
  virtual ~TMainView() = default;

  // A scan or a fix begins: the problem list is about to change under the window, which
  // shows no row of it until EndRun, and the categories' counts now and then.
  virtual void BeginRun() = 0;
  // Takes all categories' counts away.
  virtual void ClearCounts() = 0;
  // It has ended, and its statistics are recorded. Shows what the problem list and the
  // number of selected problems are now: rows, counts, status bar, summary. Scanned: of all
  // categories; else of the one shown before.
  virtual void EndRun(bool Scanned) = 0;

  // The line that tells what to do next.
  virtual void SetWelcome(std::u16string_view Text) = 0;
  // The categories' counts, from the problem list.
  virtual void RefreshCounts() = 0;
};

} // namespace hivesweep
