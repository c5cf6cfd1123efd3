#pragma once

// Folding of noted context sightings into the ordered list of an N-gram's context words.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/part_of_context.h"

namespace colx {

// Puts one list together after another, in scratch memory that it uses again and again. To be fed, after clear, the
// list as it was, in its order, and then the sightings since, in theirs.
class ContextFolder {
 public:
  // Begins a list; at most `size` words and sightings may follow.
  void clear(std::size_t size);

  // Takes the next word of the list as it was; no word comes twice.
  void take_listed(const PartOfContext& part);

  // Takes the next sighting.
  void take_sighting(const PartOfContext& part);

  // Returns the list: words by non-increasing frequency, of equal ones that first which reached the frequency first.
  // Valid until the next call of clear.
  std::span<const PartOfContext> fold();

 private:
  struct Risen {
    PartOfContext part;
    std::uint32_t moment;
  };

  // A slot of the look-up table is in use if it bears the stamp of the list in hand.
  struct Slot {
    std::uint64_t key;
    std::uint32_t part;
    std::uint32_t stamp;
  };

  Slot& _slot_of(const PartOfContext& part);

  void _append(const PartOfContext& part, std::uint32_t moment, Slot& slot);

  std::vector<PartOfContext> _parts;    // in the order in which they came
  std::vector<std::uint32_t> _moments;  // of the last sighting that raised a part, from 1; 0: it stands as it was
  std::size_t _size = 0;                // how many parts there are
  bool _any_risen = false;              // to 2 or more
  std::vector<Slot> _slots;
  unsigned _shift = 0;
  std::uint32_t _stamp = 0;
  std::uint32_t _moment = 0;
  std::vector<Risen> _risen;
  std::vector<PartOfContext> _list;
};

}  // namespace colx
