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
  _entries.clear();
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

void ContextFolder::take_listed(const PartOfContext& part) {
  _slot_of(part) = {part.key(), static_cast<std::uint32_t>(_entries.size()), _stamp};
  _entries.push_back({part, 0});
}

void ContextFolder::take_sighting(const PartOfContext& part) {
  ++_moment;
  Slot& slot = _slot_of(part);
  if (slot.stamp != _stamp) {
    slot = {part.key(), static_cast<std::uint32_t>(_entries.size()), _stamp};
    _entries.push_back({part, _moment});
  } else if (Entry& entry = _entries[slot.entry]; entry.part.inc()) {
    entry.moment = _moment;
  }
}

// Words that did not rise are in order already. Those that did, to 2 or more, are sorted and merged in behind their
// equals, which had their frequency before; words seen for the first time follow at the end, in the order in which they
// came.
std::span<const PartOfContext> ContextFolder::fold() {
  _risen.clear();
  for (const Entry& entry : _entries) {
    if (entry.moment != 0 && entry.part.frequency() > 1) _risen.push_back(entry);
  }
  std::sort(_risen.begin(), _risen.end(), [](const Entry& a, const Entry& b) {
    return a.part.frequency() != b.part.frequency() ? a.part.frequency() > b.part.frequency() : a.moment < b.moment;
  });
  _list.clear();
  auto risen = _risen.begin();
  const auto put_risen_above = [&](std::uint32_t frequency) {
    for (; risen != _risen.end() && risen->part.frequency() > frequency; ++risen)
      _list.push_back(risen->part);
  };
  for (const Entry& entry : _entries) {
    if (entry.moment != 0) continue;
    put_risen_above(entry.part.frequency());
    _list.push_back(entry.part);
  }
  put_risen_above(1);
  for (const Entry& entry : _entries) {
    if (entry.moment != 0 && entry.part.frequency() == 1) _list.push_back(entry.part);
  }
  return _list;
}

}  // namespace colx
