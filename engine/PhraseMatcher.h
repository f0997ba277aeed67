// Finds which of many phrases occur in a text, in one pass over the text.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

namespace hivesweep {

// An Aho-Corasick automaton. The text's ASCII letters are folded to lower case as
// they are read; the phrases are taken as they are, so one with an upper-case
// letter can never be found. Phrases are ASCII. Each belongs to one of a few lists
// and has a rank in it; a search tells, per list, the lowest rank that occurs.
class TPhraseMatcher {
public:
  static constexpr std::size_t ListCount = 4;
  static constexpr std::uint16_t NotFound = 0xFFFF;
  using TRanks = std::array<std::uint16_t, ListCount>;

  struct TPhrase {
    std::u16string_view Text;
    std::size_t List = 0;
    std::uint16_t Rank = 0;
  };

  // An empty phrase is never found.
  explicit TPhraseMatcher(const std::vector<TPhrase> &Phrases);

  TRanks Search(std::u16string_view Text) const;

  // How far a search through a text has come that is given piece by piece. Where it
  // stands can be kept, and gone on from more than once.
  using TState = std::uint16_t;
  static constexpr TState AtStart = 0;

  // Goes on with the next piece. True when a phrase of any list ends in it.
  bool Continue(TState &State, std::u16string_view Text) const;

private:
  TState Next(TState State, char16_t Unit) const;
  TState AddState();
  void Insert(const TPhrase &Phrase);
  void LinkStates();

  // Every unit that occurs in a phrase has a class of its own, from 1 on; all
  // others share class 0.
  std::array<std::uint8_t, 128> Classes_{};
  std::size_t ClassCount_ = 1;
  std::vector<TState> Moves_;       // the next state, by state and class
  std::vector<TRanks> Ranks_;       // what has been found when a state is reached
  std::vector<std::uint8_t> Found_; // by state: 1 when its ranks hold anything
};

} // namespace hivesweep
