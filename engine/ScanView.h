// What a scan shows of itself while it runs. The window's controls and the
// command line's progress line stand behind these.
#pragma once

#include <cstdint>
#include <string_view>

namespace hivesweep {

class TStatusLabel {
public:
  TStatusLabel() = default;
  TStatusLabel(const TStatusLabel &) = delete;
  TStatusLabel &operator=(const TStatusLabel &) = delete;
  virtual ~TStatusLabel() = default;

  virtual void SetText(std::u16string_view Text) = 0;
};

// A position between two bounds. It may be moved past its maximum, which only
// estimates the work; a bar then shows itself full.
class TProgressBar {
public:
  TProgressBar() = default;
  TProgressBar(const TProgressBar &) = delete;
  TProgressBar &operator=(const TProgressBar &) = delete;
  virtual ~TProgressBar() = default;

  std::int32_t Position() const { return Position_; }
  std::int32_t Min() const { return Min_; }
  std::int32_t Max() const { return Max_; }

  void SetPosition(std::int32_t Position) { Set(Position_, Position); }
  void SetMin(std::int32_t Min) { Set(Min_, Min); }
  void SetMax(std::int32_t Max) { Set(Max_, Max); }
  void Advance() { SetPosition(Position_ + 1); }

protected:
  // Called after each change.
  virtual void Changed() = 0;

private:
  void Set(std::int32_t &Field, std::int32_t Value) {
    Field = Value;
    Changed();
  }

  std::int32_t Position_ = 0;
  std::int32_t Min_ = 0;
  std::int32_t Max_ = 100;
};

} // namespace hivesweep
