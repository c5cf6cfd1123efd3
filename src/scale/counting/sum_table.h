#pragma once

// Adding up the counts of equal records of K members, in memory. Finding one costs its place in the index and one
// comparison; a table is made for the records of one bucket after another, so that it stays in the cache.

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

namespace colx::scale {

// What a table holds of a record of K members: its members, 6 bytes each, and what has been added up.
template <unsigned K>
struct Sum {
  unsigned char members[6 * K];
  std::uint64_t count;
  std::uint64_t first;  // the least of the numbers of first occurrences
};

// Numbers records in the order in which they come.
template <unsigned K>
class SumTable {
 public:
  static constexpr std::size_t members_size = std::size_t{6} * K;

  // Forgets everything, and makes room for about as many records.
  void clear(std::size_t expected) {
    _sums.clear();
    const std::size_t slots = std::bit_ceil(expected * 2 + 16);
    if (slots > _slots.size() || slots < _slots.size() / 8) {
      _slots.assign(slots, Slot{});
    } else {
      std::fill(_slots.begin(), _slots.end(), Slot{});
    }
  }

  // The number of the record with these members, which is made, with a count of 0, if it is not there. The low half of
  // `hash` must be well mixed.
  std::uint32_t find_or_add(std::uint64_t hash, const char* members) {
    const auto tag = static_cast<std::uint32_t>(hash);
    const std::size_t mask = _slots.size() - 1;
    std::size_t i = tag & mask;
    for (; _slots[i].number != 0; i = (i + 1) & mask) {
      if (_slots[i].tag == tag && std::memcmp(_sums[_slots[i].number - 1].members, members, members_size) == 0)
        return _slots[i].number - 1;
    }
    Sum<K>& sum = _sums.emplace_back();
    std::memcpy(sum.members, members, members_size);
    sum.count = 0;
    sum.first = ~std::uint64_t{0};
    const auto number = static_cast<std::uint32_t>(_sums.size());
    _slots[i] = {number, tag};
    if (_sums.size() * 2 > _slots.size()) _grow();
    return number - 1;
  }

  Sum<K>& operator[](std::uint32_t number) { return _sums[number]; }
  std::size_t size() const { return _sums.size(); }
  const std::vector<Sum<K>>& sums() const { return _sums; }

 private:
  // The number of a record, from 1, and the low half of its hash, the low bits of which tell its home.
  struct Slot {
    std::uint32_t number = 0;
    std::uint32_t tag = 0;
  };

  void _grow() {
    std::vector<Slot> old(_slots.size() * 2);
    old.swap(_slots);
    const std::size_t mask = _slots.size() - 1;
    for (const Slot& slot : old) {
      if (slot.number == 0) continue;
      std::size_t i = slot.tag & mask;
      while (_slots[i].number != 0)
        i = (i + 1) & mask;
      _slots[i] = slot;
    }
  }

  std::vector<Sum<K>> _sums;
  std::vector<Slot> _slots;
};

}  // namespace colx::scale
