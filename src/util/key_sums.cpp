#include "util/key_sums.h"

#include <bit>
#include <utility>

namespace colx {

namespace {

// So many items, or keys, have their table in the second cache.
constexpr std::size_t part_size = std::size_t{1} << 14;

}  // namespace

void KeySums::_set_parts(std::uint32_t items) {
  std::size_t parts = 1;
  _part_shift = 32;
  for (; items / parts > part_size; parts *= 2)
    --_part_shift;
  _ends.assign(parts, 0);
  _next.resize(parts);
}

void KeySums::_begin_parts() {
  std::uint32_t end = 0;
  for (std::size_t part = 0; part < _ends.size(); ++part) {
    _next[part] = end;
    end += _ends[part];
    _ends[part] = end;
  }
}

void KeySums::_add_up_parts(bool hand_sums_back) {
  _different = 0;
  std::uint32_t begin = 0;
  for (const std::uint32_t end : _ends) {
    _clear_slots(end - begin);
    for (std::uint32_t place = begin; place < end; ++place) {
      const std::uint32_t number = _number_of(_keys[place]);
      if (number == _different) {
        _keys[number] = 0;
        ++_different;
      }
      _keys[number] += _amounts[place];
      _amounts[place] = number;
    }
    if (hand_sums_back) {
      for (std::uint32_t place = begin; place < end; ++place)
        _amounts[place] = sum(_amounts[place]);
    }
    begin = end;
  }
}

void KeySums::_clear_slots(std::size_t items) {
  _capacity = std::bit_ceil(std::min(items, part_size) + 1);
  if (_slots.size() < _capacity) _slots.resize(_capacity);
  std::fill_n(_slots.begin(), _capacity, Slot{});
  _taken = 0;
}

// The number of a key, the next one if it has none yet.
std::uint32_t KeySums::_number_of(std::uint64_t key) {
  std::size_t i = _hash(key) & (_capacity - 1);
  for (; _slots[i].number != 0; i = (i + 1) & (_capacity - 1)) {
    if (_slots[i].key == key) return _slots[i].number - 1;
  }
  _slots[i] = {key, _different + 1};
  if (++_taken > _capacity / 4 * 3) _grow();
  return _different;
}

void KeySums::_grow() {
  std::vector<Slot> old(_capacity * 4);
  old.swap(_slots);
  old.resize(_capacity);
  _capacity *= 4;
  for (const Slot& slot : old) {
    if (slot.number == 0) continue;
    std::size_t i = _hash(slot.key) & (_capacity - 1);
    while (_slots[i].number != 0)
      i = (i + 1) & (_capacity - 1);
    _slots[i] = slot;
  }
}

}  // namespace colx
