#include "engine/PhraseMatcher.h"

#include <algorithm>
#include <stdexcept>

#include "platform/Text.h"

namespace hivesweep {

namespace {

constexpr TPhraseMatcher::TRanks NoRanks = [] {
  TPhraseMatcher::TRanks Ranks{};
  Ranks.fill(TPhraseMatcher::NotFound);
  return Ranks;
}();

void TakeLower(TPhraseMatcher::TRanks &Into, const TPhraseMatcher::TRanks &From) {
  for (std::size_t List = 0; List < Into.size(); ++List)
    Into[List] = std::min(Into[List], From[List]);
}

} // namespace

TPhraseMatcher::TPhraseMatcher(const std::vector<TPhrase> &Phrases) {
  for (const TPhrase &Phrase : Phrases) {
    for (const char16_t Unit : Phrase.Text) {
      if (Unit >= Classes_.size())
        throw std::invalid_argument("a phrase to match is not ASCII");
      if (Classes_[Unit] == 0)
        Classes_[Unit] = static_cast<std::uint8_t>(ClassCount_++);
    }
  }
  // Room for the case that no two phrases begin alike: growing would copy it all.
  std::size_t MostStates = 1;
  for (const TPhrase &Phrase : Phrases)
    MostStates += Phrase.Text.size();
  Moves_.reserve(MostStates * ClassCount_);
  Ranks_.reserve(MostStates);
  AddState();
  for (const TPhrase &Phrase : Phrases)
    if (!Phrase.Text.empty())
      Insert(Phrase);
  LinkStates();
}

TPhraseMatcher::TState TPhraseMatcher::AddState() {
  if (Ranks_.size() > 0xFFFF)
    throw std::length_error("too many phrases to match");
  Moves_.resize(Moves_.size() + ClassCount_, 0);
  Ranks_.push_back(NoRanks);
  Found_.push_back(0);
  return static_cast<TState>(Ranks_.size() - 1);
}

void TPhraseMatcher::Insert(const TPhrase &Phrase) {
  TState State = 0;
  for (const char16_t Unit : Phrase.Text) {
    const std::size_t Move = State * ClassCount_ + Classes_[Unit];
    if (Moves_[Move] == 0) {
      const TState Added = AddState();
      Moves_[Move] = Added;
    }
    State = Moves_[Move];
  }
  std::uint16_t &Rank = Ranks_[State][Phrase.List];
  Rank = std::min(Rank, Phrase.Rank);
}

// Gives every state its move for every class: where the phrase being read can't go
// on, the move is that of the longest end of it that begins a phrase too.
void TPhraseMatcher::LinkStates() {
  std::vector<TState> Fallback(Ranks_.size(), 0);
  std::vector<TState> Order;
  Order.reserve(Ranks_.size());
  for (std::size_t Class = 1; Class < ClassCount_; ++Class)
    if (Moves_[Class] != 0)
      Order.push_back(Moves_[Class]);
  for (std::size_t Index = 0; Index < Order.size(); ++Index) {
    const TState State = Order[Index];
    TakeLower(Ranks_[State], Ranks_[Fallback[State]]);
    Found_[State] = Ranks_[State] != NoRanks;
    TState *const Own = &Moves_[State * ClassCount_];
    const TState *const Others = &Moves_[Fallback[State] * ClassCount_];
    for (std::size_t Class = 0; Class < ClassCount_; ++Class) {
      TState &Target = Own[Class];
      const TState Other = Others[Class];
      if (Target == 0) {
        Target = Other;
      } else {
        Fallback[Target] = Other;
        Order.push_back(Target);
      }
    }
  }
  // From here on only text is read: its capital letters move as the small ones.
  for (char16_t Unit = u'A'; Unit <= u'Z'; ++Unit)
    Classes_[Unit] = Classes_[AsciiLower(Unit)];
}

TPhraseMatcher::TState TPhraseMatcher::Next(TState State, char16_t Unit) const {
  const std::size_t Class = Unit < Classes_.size() ? Classes_[Unit] : 0;
  return Moves_[State * ClassCount_ + Class];
}

TPhraseMatcher::TRanks TPhraseMatcher::Search(std::u16string_view Text) const {
  TRanks Best = NoRanks;
  TState State = AtStart;
  for (const char16_t Unit : Text) {
    State = Next(State, Unit);
    if (Found_[State])
      TakeLower(Best, Ranks_[State]);
  }
  return Best;
}

bool TPhraseMatcher::Continue(TState &State, std::u16string_view Text) const {
  bool Found = false;
  for (const char16_t Unit : Text) {
    State = Next(State, Unit);
    Found |= Found_[State] != 0;
  }
  return Found;
}

} // namespace hivesweep
