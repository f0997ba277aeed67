#include "cli/Progress.h"

#include <algorithm>
#include <utility>

#include "engine/Areas.h"
#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr std::uint64_t MillisecondsBetween = 50;
constexpr int UsualWidth = 80; // of a terminal that does not tell
constexpr int LongestBar = 40;
constexpr int ShortestBar = 4;

std::size_t LongestCaption() {
  std::size_t Longest = 0;
  for (const TArea &Area : Areas)
    Longest = std::max(Longest, Area.Caption.size());
  return Longest;
}

} // namespace

TProgressLine::TProgressLine(TCliConsole &Console, std::function<std::u16string_view()> Caption,
                             bool Visible)
    : Console_(Console), Caption_(std::move(Caption)), Visible_(Visible),
      Width_(Visible ? Console.Width(TConsoleStream::Error) : 0) {
  if (Width_ <= 0)
    Width_ = UsualWidth;
}

// Called once per registry entry.
void TProgressLine::Changed() {
  if (!Visible_)
    return;
  const std::u16string_view Caption = Caption_();
  const std::uint64_t Now = Console_.Ticks();
  const bool IsNew = !Caption.empty() && Caption != Shown_;
  if (!IsNew && (Shown_.empty() || Now - DrawnAt_ < MillisecondsBetween))
    return;
  if (IsNew)
    Shown_ = Caption;
  DrawnAt_ = Now;
  Draw();
}

// Plain characters and a carriage return: the consoles of old systems understand
// nothing else.
void TProgressLine::Draw() {
  std::string New = Line();
  if (New == Drawn_)
    return;
  Console_.Write(TConsoleStream::Error,
                 "\r" + New +
                     std::string(Drawn_.size() - std::min(New.size(), Drawn_.size()), ' '));
  Drawn_ = std::move(New);
}

void TProgressLine::Wipe() {
  if (!Drawn_.empty())
    Console_.Write(TConsoleStream::Error, "\r" + std::string(Drawn_.size(), ' ') + "\r");
  Drawn_.clear();
}

std::string TProgressLine::Line() const {
  const std::int64_t Whole = std::max<std::int64_t>(std::int64_t{Max()} - Min(), 1);
  const std::int64_t Done = std::clamp<std::int64_t>(std::int64_t{Position()} - Min(), 0, Whole);

  const std::string Percent = std::to_string(Done * 100 / Whole) + "%";
  const std::size_t PercentAt = 5 - std::min<std::size_t>(Percent.size(), 5); // " 100%"

  std::string Out = ToUtf8(Shown_);
  // The last column stays free: some terminals go on to the next line behind it.
  const int Room =
      Width_ - 1 - static_cast<int>(LongestCaption() + std::string_view(" []").size() + 5);
  if (const int Length = std::min(Room, LongestBar); Length >= ShortestBar) {
    const auto Filled = static_cast<std::size_t>(Done * Length / Whole);
    Out.resize(LongestCaption(), ' ');
    Out += " [" + std::string(Filled, '#') +
           std::string(static_cast<std::size_t>(Length) - Filled, '.') + "]";
  } else {
    Out.resize(static_cast<std::size_t>(std::max(Width_ - 1 - 5, 0)), ' ');
  }
  Out += std::string(PercentAt, ' ') + Percent;
  return Out;
}

} // namespace hivesweep
