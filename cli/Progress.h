// The progress line of a scan.
#pragma once

#include <cstdint>
#include <string>

#include "cli/CliConsole.h"
#include "engine/ScanRegistry.h"
#include "engine/ScanView.h"

namespace hivesweep {

// One line on standard error: the caption of the area that runs, a bar and a
// percentage. It fits the terminal, is drawn at most twenty times a second and once
// more when an area begins, and is wiped away in the end.
class TScanProgress final : public TProgressBar, public TStatusLabel {
public:
  // One that is not Visible writes nothing.
  TScanProgress(TCliConsole &Console, const TScanRegistry &Engine, bool Visible);
  TScanProgress(const TScanProgress &) = delete;
  TScanProgress &operator=(const TScanProgress &) = delete;
  ~TScanProgress() override { Wipe(); }

  // The text is not shown: the area's caption says more.
  void SetText(std::u16string_view) override { Changed(); }

  void Wipe();

protected:
  void Changed() override;

private:
  void Draw();
  std::string Line() const;

  TCliConsole &Console_;
  const TScanRegistry &Engine_;
  const bool Visible_;
  int Width_;
  int Area_ = 0; // the last one that ran
  std::uint64_t DrawnAt_ = 0;
  std::string Drawn_;
};

} // namespace hivesweep
