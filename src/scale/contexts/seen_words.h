#pragma once

// Lists of the words seen around an N-gram, while they are put together from pieces.
//
// The list that is written in the end is ordered by frequency, and of equal frequencies that word comes first which was
// seen for the last time first. So all there is to keep of a word is how often it was seen and where it stands by last
// sighting. A list in the making has its words from the last seen to the first: put behind one of later sightings it
// goes on with it, words that are there already only adding to their frequency.

#include <cstdint>
#include <span>
#include <vector>

#include "model/part_of_context.h"

namespace colx::scale {

// A word, packed as in TaggedLemma, and how often it was seen, at most PartOfContext::_max_frequency times.
struct SeenWord {
  std::uint32_t word;
  std::uint32_t count;

  friend bool operator==(const SeenWord&, const SeenWord&) = default;
};

// Puts one list together after another, in memory that it uses again.
class SeenWords {
 public:
  // Begins a list.
  void clear();

  // Takes a word that was seen so often before all that has come so far.
  void add(std::uint32_t word, std::uint32_t count) {
    Slot& slot = _slot_of(word);
    if (slot.stamp == _stamp) {
      std::uint32_t& sum = _words[slot.place].count;
      sum = count < PartOfContext::_max_frequency - sum ? sum + count : PartOfContext::_max_frequency;
    } else {
      _append(word, count, slot);
    }
  }

  // The words from the last seen to the first. Valid until the next call of another member.
  std::span<const SeenWord> words() const { return _words; }

 private:
  // A slot is in use if it bears the stamp of the list in hand.
  struct Slot {
    std::uint32_t stamp = 0;
    std::uint32_t place = 0;  // in _words
  };

  Slot& _slot_of(std::uint32_t word) {
    std::uint32_t i = (word * 0x9E3779B1U) >> _shift;
    while (_slots[i].stamp == _stamp && _words[_slots[i].place].word != word)
      i = (i + 1) & _mask;
    return _slots[i];
  }
  void _append(std::uint32_t word, std::uint32_t count, Slot& slot);
  void _begin_slots(unsigned bits);

  std::vector<SeenWord> _words;
  std::vector<Slot> _slots;
  std::uint32_t _mask = 0;
  unsigned _shift = 0;
  std::uint32_t _stamp = 0;
};

// Puts the words of a complete list, which stand from the last seen to the first, in the order in which they are
// written.
void rank_seen_words(std::vector<SeenWord>& words);

}  // namespace colx::scale
