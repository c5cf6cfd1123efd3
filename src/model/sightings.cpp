#include "model/sightings.h"

#include <algorithm>

namespace colx {

namespace {

// What is added before full is asked again: the words of the sentences of a window, and the occurrences of a batch.
constexpr std::uint32_t spare_words = 1U << 24;
constexpr std::uint32_t spare_sightings = 1U << 16;

}  // namespace

Sightings::Sightings() : _n(settings::n), _types((1U << _n) - 1U), _width(std::size_t{_places} + _n), _lists(_types) {}

void Sightings::add_word(std::uint32_t word) {
  // By less than a vector would grow, as it is copied in no time beside what is done for every word.
  if (_words.size() == _words.capacity())
    _words.reserve(_words.size() + std::max<std::size_t>(4096, _words.size() / 4));
  _words.push_back(word);
}

std::uint32_t Sightings::add(const Sighting& sighting) {
  if (_size % per_chunk == 0) _chunks.push_back(std::make_unique<std::uint32_t[]>(per_chunk * (_width + _types)));
  _sorted_type = 0;
  std::uint32_t* const row = _row(++_size);
  row[_begin] = sighting.begin;
  row[_end] = sighting.end;
  row[_left] = sighting.left;
  row[_right] = sighting.right;
  std::copy_n(sighting.words.begin(), _n, row + _places);
  return _size;
}

bool Sightings::full() const {
  return words() > Sighting::none - spare_words || _size > Sighting::none - spare_sightings;
}

// A counting sort, which is stable.
void Sightings::_sort(std::uint8_t type) {
  _ends.assign(_lists[type - 1U] + std::size_t{2}, 0);
  const auto for_each_list = [&](const auto& take) {
    for (std::uint32_t begin = 0; begin < _size; begin += per_chunk) {
      const std::uint32_t* const lists = _lists_of(begin + 1, type);
      const std::uint32_t count = std::min<std::uint32_t>(per_chunk, _size - begin);
      for (std::uint32_t i = 0; i < count; ++i) {
        if (lists[i] != 0) take(begin + i + 1, lists[i]);
      }
    }
  };
  for_each_list([&](std::uint32_t, std::uint32_t list) { ++_ends[list + 1]; });
  for (std::size_t list = 1; list < _ends.size(); ++list)
    _ends[list] += _ends[list - 1];
  _sorted.resize(_ends.back());
  // Where a list begins there is in the end where it ends.
  for_each_list([&](std::uint32_t number, std::uint32_t list) { _sorted[_ends[list]++] = number; });
  _sorted_type = type;
}

void Sightings::clear() {
  _sorted_type = 0;
  _words.clear();
  _chunks.clear();
  _size = 0;
}

}  // namespace colx
