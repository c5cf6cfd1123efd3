#pragma once

// Folding of context sightings into the ordered list of an N-gram's context words.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "model/part_of_context.h"

namespace colx {

// Puts one list together after another, in scratch memory that it uses again and again. To be fed, after clear, the
// list as it was, in its order, and then the sightings since, in theirs.
class ContextFolder {
 public:
  // Sightings of a list are numbered up to `most_moments`, not less than are taken at once; then those so far are
  // folded.
  explicit ContextFolder(std::uint32_t most_moments = std::numeric_limits<std::uint32_t>::max())
      : _most_moments(most_moments) {}

  // Begins a list, of about so many words and sightings.
  void clear(std::size_t expected);

  // Takes the next word of the list as it was; no word comes twice.
  void take_listed(const PartOfContext& part);

  // Takes the next sightings, of words packed as in TaggedLemma; not more than 2^20 at once.
  void take_wide(std::span<const std::uint32_t> words) {
    _make_room(words.size());
    for (const std::uint32_t word : words)
      _take<false>(word);
  }
  void take_narrow(std::uint32_t word) {
    _make_room(1);
    _take<true>(word);
  }

  // Returns the list: words by non-increasing frequency, of equal ones that first which reached the frequency first.
  // Valid until the next call of clear.
  std::span<const PartOfContext> fold();

 private:
  struct Risen {
    std::uint64_t rank;  // the more frequent before the less frequent, then the earlier before the later
    PartOfContext part;
  };

  // A word and, above the bit that marks a narrow one, the number of its part from 1; all 0: the slot is free.
  struct Slot {
    std::uint32_t word = 0;
    std::uint32_t part_and_role = 0;
  };

  // The slot that holds a word, or the one that is free for it.
  template <bool narrow>
  Slot& _slot_of(std::uint32_t word) {
    std::size_t i = (word * 0x9E3779B1U) >> _shift;
    while (_slots[i].part_and_role != 0 && !(_slots[i].word == word && ((_slots[i].part_and_role & 1U) != 0) == narrow))
      i = (i + 1) & _mask;
    return _slots[i];
  }

  template <bool narrow>
  void _append(Slot& slot, const PartOfContext& part, std::uint32_t moment) {
    _parts[_size] = part;
    _moments[_size] = moment;
    ++_size;
    slot = {part.tagged_lemma(), static_cast<std::uint32_t>(_size) << 1 | (narrow ? 1U : 0U)};
  }

  template <bool narrow>
  void _take(std::uint32_t word) {
    ++_moment;
    Slot& slot = _slot_of<narrow>(word);
    if (slot.part_and_role == 0) {
      _append<narrow>(slot, PartOfContext(word, narrow), _moment);
      return;
    }
    const std::uint32_t part = (slot.part_and_role >> 1) - 1;
    if (!_parts[part].inc()) return;
    _moments[part] = _moment;
    _any_risen = true;
  }

  // Sees to it that so many words more can be taken.
  void _make_room(std::size_t words) {
    if (_size + words > _room || words > _most_moments - _moment) _grow(words);
  }
  void _grow(std::size_t words);
  void _set_slots(unsigned bits);

  std::uint32_t _most_moments;
  std::vector<PartOfContext> _parts;    // in the order in which they came
  std::vector<std::uint32_t> _moments;  // of the last sighting that raised a part, from 1; 0: it stands as it was
  std::size_t _size = 0;                // how many parts there are
  std::size_t _room = 0;                // how many there may be
  bool _any_risen = false;              // to 2 or more
  std::vector<Slot> _slots;
  std::size_t _mask = 0;  // one less than the slots in use
  unsigned _shift = 0;
  std::uint32_t _moment = 0;
  std::vector<Risen> _risen;
  std::vector<PartOfContext> _unrisen;
  std::vector<PartOfContext> _list;
};

}  // namespace colx
