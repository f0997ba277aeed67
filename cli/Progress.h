// The progress line of what takes its time.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "cli/CliConsole.h"
#include "engine/ScanView.h"

namespace hivesweep {

// One line on standard error: a caption, a bar and a percentage. It fits the terminal,
// is drawn at most twenty times a second and once more when the caption changes, and is
// wiped away in the end.
class TProgressLine final : public TProgressBar, public TStatusLabel {
public:
  // Caption is asked at every change; the one before stays while it answers nothing. A
  // line that is not Visible writes nothing.
  TProgressLine(TCliConsole &Console, std::function<std::u16string_view()> Caption, bool Visible);
  TProgressLine(const TProgressLine &) = delete;
  TProgressLine &operator=(const TProgressLine &) = delete;
  ~TProgressLine() override { Wipe(); }

  // The text is not shown: the caption says more.
  void SetText(std::u16string_view) override { Changed(); }

  void Wipe();

protected:
  void Changed() override;

private:
  void Draw();
  std::string Line() const;

  TCliConsole &Console_;
  const std::function<std::u16string_view()> Caption_;
  const bool Visible_;
  int Width_;
  std::u16string Shown_; // the last caption
  std::uint64_t DrawnAt_ = 0;
  std::string Drawn_;
};

} // namespace hivesweep
