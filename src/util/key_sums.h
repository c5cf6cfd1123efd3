#pragma once

// Adding up amounts by 64-bit keys, for millions of items many of which have their key in common.
//
// Items are first dealt out by the hash of their key to parts of some thousands, and then each part is added up by
// itself in a table that stays in the cache, so that no item costs a cache miss of its own, however many there are.
// What an item gets is handed out in the order of the items again.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <vector>

#include "util/hashing.h"
#include "util/zeroed_array.h"

namespace colx {

// Adds up again and again, in scratch memory of 12 bytes an item.
class KeySums {
 public:
  KeySums() = default;
  // Takes the memory for so many items; it is not written to before it is needed. Throws std::bad_alloc.
  explicit KeySums(std::size_t most_items) : _keys(most_items), _amounts(most_items) {}

  // Adds up `amount_of(i)` of the items i from 0 on, at most as many as there is memory for, by `key_of(i)`, and calls
  // `take(i, sum)` with the sum of the item's key for each, in their order. A sum saturates at the largest 32-bit
  // number. Throws std::bad_alloc.
  template <typename KeyOf, typename AmountOf, typename Take>
  void add_up(std::uint32_t items, const KeyOf& key_of, const AmountOf& amount_of, const Take& take) {
    _deal_out(items, key_of, amount_of);
    _add_up_parts(true);
    _hand_back(items, key_of, take);
  }

  // The same, but calls `take(i, number)` with the number of the key, by which sum() tells what has been added up.
  template <typename KeyOf, typename AmountOf, typename Take>
  void number(std::uint32_t items, const KeyOf& key_of, const AmountOf& amount_of, const Take& take) {
    _deal_out(items, key_of, amount_of);
    _add_up_parts(false);
    _hand_back(items, key_of, take);
  }

  // How many different keys there were the last time; they have the numbers from 0.
  std::uint32_t different() const { return _different; }

  // The sum of a key of the last time, by its number.
  std::uint32_t sum(std::uint32_t number) const {
    return static_cast<std::uint32_t>(
        std::min<std::uint64_t>(_keys[number], std::numeric_limits<std::uint32_t>::max()));
  }

 private:
  // A key and its number, from 1; 0: the slot is free.
  struct Slot {
    std::uint64_t key;
    std::uint32_t number;
  };

  static std::uint64_t _hash(std::uint64_t key) { return mix(key ^ hash_keys[0], hash_keys[1]); }

  // The high bits of a hash tell the part, the low ones the slot.
  std::size_t _part_of(std::uint64_t key) const { return static_cast<std::size_t>(_hash(key) >> 32 >> _part_shift); }

  template <typename KeyOf, typename AmountOf>
  void _deal_out(std::uint32_t items, const KeyOf& key_of, const AmountOf& amount_of) {
    _set_parts(items);
    for (std::uint32_t i = 0; i < items; ++i)
      ++_ends[_part_of(key_of(i))];
    _begin_parts();
    for (std::uint32_t i = 0; i < items; ++i) {
      const std::uint64_t key = key_of(i);
      const std::uint32_t place = _next[_part_of(key)]++;
      _keys[place] = key;
      _amounts[place] = amount_of(i);
    }
  }

  template <typename KeyOf, typename Take>
  void _hand_back(std::uint32_t items, const KeyOf& key_of, const Take& take) {
    for (std::size_t part = _ends.size(); part-- > 0;)
      _next[part] = part == 0 ? 0 : _ends[part - 1];
    for (std::uint32_t i = 0; i < items; ++i)
      take(i, _amounts[_next[_part_of(key_of(i))]++]);
  }

  void _set_parts(std::uint32_t items);
  void _begin_parts();
  void _add_up_parts(bool hand_sums_back);
  void _clear_slots(std::size_t items);
  std::uint32_t _number_of(std::uint64_t key);
  void _grow();

  unsigned _part_shift = 32;
  std::vector<std::uint32_t> _ends;  // by part: sizes first, then where they end
  std::vector<std::uint32_t> _next;  // by part
  // By place: keys, whose memory is taken over by the sums of their numbers, of which there are never more than keys
  // looked at; amounts, in the places of which stands what is handed back.
  ZeroedArray<std::uint64_t> _keys;
  ZeroedArray<std::uint32_t> _amounts;
  std::uint32_t _different = 0;
  std::vector<Slot> _slots;
  std::size_t _capacity = 0;  // of the slots, as many as are in use for this part: a power of two
  std::size_t _taken = 0;
};

}  // namespace colx
