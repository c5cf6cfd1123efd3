#include "model/context_folder.h"

#include <algorithm>
#include <bit>
#include <new>

namespace colx {

namespace {

// The slots of a list at its beginning: of a short one few, so that they are soon cleared.
constexpr unsigned least_slot_bits = 6;
constexpr unsigned most_slot_bits_at_first = 11;

// So many can be told apart by the hash of a word.
constexpr unsigned most_slot_bits = 31;

}  // namespace

void ContextFolder::clear(std::size_t expected) {
  const auto bits = static_cast<unsigned>(std::bit_width(expected)) + 1;
  _size = 0;
  _any_risen = false;
  _moment = 0;
  _set_slots(std::clamp(bits, least_slot_bits, most_slot_bits_at_first));
}

// Half of the slots may be taken. Only as many are used as the list calls for, so that those of short ones stay in the
// cache.
void ContextFolder::_set_slots(unsigned bits) {
  if (bits > most_slot_bits) throw std::bad_alloc();
  const std::size_t slots = std::size_t{1} << bits;
  if (_slots.size() < slots) {
    _slots.resize(slots);
    _parts.resize(slots / 2, PartOfContext(0, false));
    _moments.resize(slots / 2);
  }
  std::fill_n(_slots.begin(), slots, Slot{});
  _mask = slots - 1;
  _shift = 32 - bits;
  _room = slots / 2;
}

void ContextFolder::_grow(std::size_t words) {
  if (words > _most_moments - _moment) {
    const std::span<const PartOfContext> folded = fold();
    const std::vector<PartOfContext> list(folded.begin(), folded.end());
    clear(2 * list.size());
    for (const PartOfContext& part : list)
      take_listed(part);
  }
  if (_size + words <= _room) return;
  _set_slots(static_cast<unsigned>(std::bit_width(2 * (_size + words))) + 1);
  for (std::size_t i = 0; i < _size; ++i) {
    const PartOfContext& part = _parts[i];
    const auto number = static_cast<std::uint32_t>(i + 1);
    if (part.narrow())
      _slot_of<true>(part.tagged_lemma()) = {part.tagged_lemma(), number << 1 | 1U};
    else
      _slot_of<false>(part.tagged_lemma()) = {part.tagged_lemma(), number << 1};
  }
}

void ContextFolder::take_listed(const PartOfContext& part) {
  _make_room(1);
  if (part.narrow())
    _append<true>(_slot_of<true>(part.tagged_lemma()), part, 0);
  else
    _append<false>(_slot_of<false>(part.tagged_lemma()), part, 0);
}

// Words that did not rise are in order already, and words seen for the first time follow them in the order in which
// they came. Those that rose, to 2 or more, are sorted and merged in behind their equals, which had their frequency
// before.
std::span<const PartOfContext> ContextFolder::fold() {
  if (!_any_risen) return {_parts.data(), _size};
  _risen.clear();
  _unrisen.clear();
  for (std::size_t i = 0; i < _size; ++i) {
    const std::uint32_t frequency = _parts[i].frequency();
    // First sightings come behind everything that was listed, and so do no harm to the order here.
    if (_moments[i] == 0 || frequency == 1)
      _unrisen.push_back(_parts[i]);
    else
      _risen.push_back({std::uint64_t{~frequency} << 32 | _moments[i], _parts[i]});
  }
  std::sort(_risen.begin(), _risen.end(), [](const Risen& a, const Risen& b) { return a.rank < b.rank; });
  _list.clear();
  auto unrisen = _unrisen.begin();
  for (const Risen& risen : _risen) {
    for (; unrisen != _unrisen.end() && unrisen->frequency() >= risen.part.frequency(); ++unrisen)
      _list.push_back(*unrisen);
    _list.push_back(risen.part);
  }
  _list.insert(_list.end(), unrisen, _unrisen.end());
  return _list;
}

}  // namespace colx
