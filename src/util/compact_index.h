#pragma once

// An index from hashes to the numbers of things that are kept elsewhere, in order, and numbered from 0.
//
// Open addressing with linear probing. A slot takes 32 bits: the number, and in the bits that numbers do not need yet a
// piece of the hash, so that things which only share a slot are hardly ever looked at. Slots hold no whole hash: when
// the index grows, hashes are computed again from the things in order, which is a pass over memory they stand in, and
// the old slots are given back before new ones are taken, so that growing never doubles anything.
//
// Finding costs one cache miss for the slot and one for the thing. At most four fifths of the slots are taken. Order
// and content of the slots never show in any output.

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

#include "util/zeroed_array.h"

namespace colx {

// Numbers the things put into it 0, 1, 2 ...; holds up to `largest_size`.
class CompactIndex {
 public:
  static constexpr std::uint32_t none = 0xFFFFFFFF;
  static constexpr std::uint32_t largest_size = 0xFFFFFFFE;

  // Returns the number of the thing with this hash for which `equal(number)` holds, or none.
  template <typename Equal>
  std::uint32_t find(std::uint64_t hash, const Equal& equal) const {
    if (_size == 0) return none;
    for (std::size_t i = _home(hash); _slots[i] != 0; i = _after(i)) {
      if (!_may_be(_slots[i], hash)) continue;
      const std::uint32_t number = (_slots[i] & _number_mask) - 1;
      if (equal(number)) return number;
    }
    return none;
  }

  // Returns the first number that may be that of a thing with this hash, without looking at things; none if there is
  // none.
  std::uint32_t candidate(std::uint64_t hash) const {
    return find(hash, [](std::uint32_t) { return true; });
  }

  // Loads the slot of a hash into the cache.
  void prefetch(std::uint64_t hash) const {
    if (_size != 0) __builtin_prefetch(&_slots[_home(hash)]);
  }

  // Gives the next number to a thing that is not there yet. `hash_of(number)` must return the hash of things already
  // there. Throws std::bad_alloc, after which the index is empty.
  template <typename HashOf>
  void insert(std::uint64_t hash, const HashOf& hash_of) {
    if (_size + 1 > _room) _grow(hash_of);
    _place(hash, _size++);
  }

  std::uint32_t size() const { return static_cast<std::uint32_t>(_size); }

  // Gives all memory back.
  void clear() { *this = CompactIndex(); }

 private:
  static constexpr std::size_t first_capacity = 1024;
  static constexpr std::size_t large_capacity = std::size_t{1} << 20;

  // Small indexes grow by four, because what growing costs beside counting is much and what the memory of a slot costs
  // is little; large ones, of which most of the memory is, by half.
  std::size_t _next_capacity() const {
    if (_slots.size() == 0) return first_capacity;
    return _slots.size() < large_capacity ? _slots.size() * 4 : _slots.size() / 2 * 3;
  }

  std::size_t _home(std::uint64_t hash) const { return static_cast<std::size_t>(((hash >> 32) * _slots.size()) >> 32); }
  std::size_t _after(std::size_t i) const { return i + 1 == _slots.size() ? 0 : i + 1; }
  bool _may_be(std::uint32_t slot, std::uint64_t hash) const {
    return ((slot ^ static_cast<std::uint32_t>(hash)) & ~_number_mask) == 0;
  }

  void _place(std::uint64_t hash, std::size_t number) {
    std::size_t i = _home(hash);
    while (_slots[i] != 0)
      i = _after(i);
    _slots[i] = (static_cast<std::uint32_t>(hash) & ~_number_mask) | static_cast<std::uint32_t>(number + 1);
  }

  template <typename HashOf>
  void _grow(const HashOf& hash_of) {
    const std::size_t capacity = _next_capacity();
    const std::size_t size = _size;
    clear();
    _slots = ZeroedArray<std::uint32_t>(capacity);
    _room = capacity / 5 * 4;
    _number_mask = static_cast<std::uint32_t>((std::uint64_t{1} << std::bit_width(capacity)) - 1);
    // Hashes are computed some way ahead, so that their slots are in the cache when they are placed.
    constexpr std::size_t ahead = 16;
    std::array<std::uint64_t, ahead> hashes;
    for (std::size_t i = 0; i < size + ahead; ++i) {
      if (i >= ahead) _place(hashes[i % ahead], i - ahead);
      if (i >= size) continue;
      hashes[i % ahead] = hash_of(static_cast<std::uint32_t>(i));
      __builtin_prefetch(&_slots[_home(hashes[i % ahead])]);
    }
    _size = size;
  }

  ZeroedArray<std::uint32_t> _slots;
  std::size_t _size = 0;
  std::size_t _room = 0;
  std::uint32_t _number_mask = 0;
};

}  // namespace colx
