#include "scale/contexts/seen_words.h"

#include <algorithm>

namespace colx::scale {

namespace {

// So many slots still fit into the fastest cache, and short lists hardly ever collide in them.
constexpr unsigned least_slot_bits = 9;

}  // namespace

void SeenWords::clear() {
  _words.clear();
  _begin_slots(least_slot_bits);
}

// Only the slots that the size of a list calls for are used, so that those of short lists stay in the cache.
void SeenWords::_begin_slots(unsigned bits) {
  const std::size_t slots = std::size_t{1} << bits;
  _mask = static_cast<std::uint32_t>(slots - 1);
  _shift = 32 - bits;
  if (_slots.size() < slots || ++_stamp == 0) {
    _slots.assign(std::max(slots, _slots.size()), Slot{});
    _stamp = 1;
  }
}

void SeenWords::_append(std::uint32_t word, std::uint32_t count, Slot& slot) {
  slot = {_stamp, static_cast<std::uint32_t>(_words.size())};
  _words.push_back({word, count});
  if (_words.size() * 2 <= _mask) return;
  _begin_slots(32 - _shift + 1);
  for (std::uint32_t place = 0; place < _words.size(); ++place)
    _slot_of(_words[place].word) = {_stamp, place};
}

// Most words of most lists were seen once, and keep their places.
void rank_seen_words(std::vector<SeenWord>& words) {
  std::reverse(words.begin(), words.end());
  const auto once = std::stable_partition(words.begin(), words.end(), [](const SeenWord& w) { return w.count > 1; });
  if (once - words.begin() > 1)
    std::stable_sort(words.begin(), once, [](const SeenWord& a, const SeenWord& b) { return a.count > b.count; });
}

}  // namespace colx::scale
