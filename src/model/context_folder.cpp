#include "model/context_folder.h"

#include <algorithm>
#include <bit>

#include "util/hashing.h"

namespace colx {

namespace {

// So many slots still fit into the fastest cache, and short lists hardly ever collide in them.
constexpr unsigned least_slot_bits = 10;

}  // namespace

void ContextFolder::clear(std::size_t size) {
  const unsigned bits = std::max(least_slot_bits, static_cast<unsigned>(std::bit_width(size)) + 1);
  const std::size_t slots = std::size_t{1} << bits;
  if (_slots.size() < slots || ++_stamp == 0) {
    _slots.assign(std::max(slots, _slots.size()), Slot{});
    _stamp = 1;
  }
  _shift = 64 - bits;
  if (_parts.size() < size) {
    _parts.resize(size, PartOfContext(0, false));
    _moments.resize(size);
  }
  _size = 0;
  _any_risen = false;
  _moment = 0;
}

// The slot that holds a word, or the one that is free for it. Only the slots that the size of this list calls for are
// used, so that those of short lists stay in the cache.
ContextFolder::Slot& ContextFolder::_slot_of(const PartOfContext& part) {
  const std::size_t mask = (std::size_t{1} << (64 - _shift)) - 1;
  const std::uint64_t key = part.key();
  std::size_t i = (key * hash_keys[0]) >> _shift;
  while (_slots[i].stamp == _stamp && _slots[i].key != key)
    i = (i + 1) & mask;
  return _slots[i];
}

void ContextFolder::_append(const PartOfContext& part, std::uint32_t moment, Slot& slot) {
  slot = {part.key(), static_cast<std::uint32_t>(_size), _stamp};
  _parts[_size] = part;
  _moments[_size] = moment;
  ++_size;
}

void ContextFolder::take_listed(const PartOfContext& part) {
  _append(part, 0, _slot_of(part));
}

void ContextFolder::take_sighting(const PartOfContext& part) {
  ++_moment;
  Slot& slot = _slot_of(part);
  if (slot.stamp != _stamp) {
    _append(part, _moment, slot);
  } else if (_parts[slot.part].inc()) {
    _moments[slot.part] = _moment;
    _any_risen = true;
  }
}

// Words that did not rise are in order already, and words seen for the first time follow them in the order in which
// they came. Those that rose, to 2 or more, are sorted and merged in behind their equals, which had their frequency
// before.
std::span<const PartOfContext> ContextFolder::fold() {
  if (!_any_risen) return {_parts.data(), _size};
  _risen.clear();
  for (std::size_t i = 0; i < _size; ++i) {
    if (_moments[i] != 0 && _parts[i].frequency() > 1) _risen.push_back({_parts[i], _moments[i]});
  }
  std::sort(_risen.begin(), _risen.end(), [](const Risen& a, const Risen& b) {
    return a.part.frequency() != b.part.frequency() ? a.part.frequency() > b.part.frequency() : a.moment < b.moment;
  });
  _list.clear();
  auto risen = _risen.begin();
  const auto put_risen_above = [&](std::uint32_t frequency) {
    for (; risen != _risen.end() && risen->part.frequency() > frequency; ++risen)
      _list.push_back(risen->part);
  };
  for (std::size_t i = 0; i < _size; ++i) {
    // First sightings come behind everything that was listed, and so do no harm to the order here.
    if (_moments[i] != 0 && _parts[i].frequency() > 1) continue;
    put_risen_above(_parts[i].frequency());
    _list.push_back(_parts[i]);
  }
  put_risen_above(0);
  return _list;
}

}  // namespace colx
