#pragma once

// The occurrences of N-grams among the words of the corpus, from which the context words of every record follow.
//
// What is seen around an occurrence is a window of words, and for all its types the same one but for the words at its
// own positions. So the words are kept once, as they stand in the corpus, and an occurrence is kept once, as a window
// of them; for each of its types there is the number of the list that it belongs to. That is far less than the words of
// all lists, and nothing is moved or looked up before lists are read. Then the occurrences of one type are sorted by
// list.

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "base/config.h"

namespace colx {

// An occurrence by places among the words of Sightings.
struct Sighting {
  static constexpr std::uint32_t none = 0xFFFFFFFF;

  std::uint32_t begin = 0;  // of the window of wide contexts
  std::uint32_t end = 0;    // of it
  // Where the words of the occurrence stand, ascending; none: not among them.
  std::array<std::uint32_t, constants::max_grammity> words{};
  std::uint32_t left = none;  // the words beside it, packed as in TaggedLemma; none: there is no such word
  std::uint32_t right = none;
};

// Holds words and sightings. Sightings have numbers from 1 on; 0 stands for none.
class Sightings {
 public:
  // To be made after NGram::init, or again when that has been called again.
  Sightings();

  // Adds the next word that may be in a window, packed as in TaggedLemma.
  void add_word(std::uint32_t word);

  // How many words there are.
  std::uint32_t words() const { return static_cast<std::uint32_t>(_words.size()); }

  // Adds a sighting, whose window is among the words, and returns its number. Throws std::bad_alloc.
  std::uint32_t add(const Sighting& sighting);

  // How many sightings there are.
  std::uint32_t size() const { return _size; }

  // Whether words or sightings may soon have no numbers any more.
  bool full() const;

  // Returns the number of a list that is new, from 1 on for each type other than 0.
  std::uint32_t new_list(std::uint8_t type) {
    _sorted_type = 0;
    return ++_lists[type - 1U];
  }

  // Says to which list a sighting belongs under a type.
  void set_list(std::uint32_t number, std::uint8_t type, std::uint32_t list) {
    _lists_of(number, type)[(number - 1) % per_chunk] = list;
    _sorted_type = 0;
  }

  // The sightings of a list, ascending. Costs a look at all sightings when it has not been this type that was asked
  // for last, or when anything has been added. Valid until then.
  std::span<const std::uint32_t> of_list(std::uint8_t type, std::uint32_t list) {
    if (_sorted_type != type) _sort(type);
    return {_sorted.data() + _ends[list - 1], _sorted.data() + _ends[list]};
  }

  // Calls `take_wide(words)` for one run after another of the words that a record of this type sees in the window, and
  // then, for the full type, `take_narrow(word)` for the words beside the occurrence.
  template <typename TakeWide, typename TakeNarrow>
  void read(std::uint32_t number, std::uint8_t type, const TakeWide& take_wide, const TakeNarrow& take_narrow) const {
    const std::uint32_t* const row = _row(number);
    std::uint32_t begin = row[_begin];
    const std::uint32_t end = row[_end];
    for (unsigned i = 0; i < _n; ++i) {
      const std::uint32_t place = row[_places + i];
      if (((type >> (_n - 1U - i)) & 1U) == 0 || place < begin || place >= end) continue;
      if (place > begin) take_wide(_run(begin, place));
      begin = place + 1;
    }
    if (end > begin) take_wide(_run(begin, end));
    if (type != _types) return;
    if (row[_left] != Sighting::none) take_narrow(row[_left]);
    if (row[_right] != Sighting::none) take_narrow(row[_right]);
  }

  // Load a sighting into the cache, and the words of one that is there. Who goes through a list asks for a sighting two
  // times as long before as for its words. All that only load are inlined, as the compiler may leave calls of such
  // functions out.
  static constexpr std::size_t ahead = 8;
  [[gnu::always_inline]] void prefetch(std::uint32_t number) const {
    const std::uint32_t* const row = _row(number);
    __builtin_prefetch(row);
    __builtin_prefetch(row + _width - 1);
  }
  [[gnu::always_inline]] void prefetch_words(std::uint32_t number) const {
    constexpr std::uint32_t line = 64 / sizeof(std::uint32_t);
    const std::uint32_t* const row = _row(number);
    const std::uint32_t begin = row[_begin];
    const std::uint32_t end = std::min(row[_end], begin + 8 * line);
    for (std::uint32_t i = begin; i < end; i += line)
      __builtin_prefetch(_words.data() + i);
    if (begin != end) __builtin_prefetch(_words.data() + end - 1);
  }

  // Loads the beginning of a list of the type that was asked for last, in steps from 0 to 3 that need some time between
  // them: where its sightings stand, their numbers, the sightings, their words.
  [[gnu::always_inline]] void prefetch_list(std::uint8_t type, std::uint32_t list, unsigned step) const {
    if (_sorted_type != type) return;
    if (step == 0) {
      __builtin_prefetch(&_ends[list - 1]);
      return;
    }
    const std::span<const std::uint32_t> numbers(_sorted.data() + _ends[list - 1], _sorted.data() + _ends[list]);
    if (step == 1) __builtin_prefetch(numbers.data());
    if (step == 2) {
      for (const std::uint32_t number : numbers.first(std::min(2 * ahead, numbers.size())))
        prefetch(number);
    }
    if (step == 3) {
      for (const std::uint32_t number : numbers.first(std::min(ahead, numbers.size())))
        prefetch_words(number);
    }
  }

  // Forgets all words and sightings; lists keep their numbers.
  void clear();

 private:
  // A sighting is a row of units: its fields and the places of its words.
  enum Field : unsigned { _begin, _end, _left, _right, _places };

  // Rows stand in chunks; behind those of a chunk stand, type by type, the lists of its sightings.
  static constexpr std::size_t per_chunk = std::size_t{1} << 12;

  std::uint32_t* _row(std::uint32_t number) const {
    return _chunks[(number - 1) / per_chunk].get() + (number - 1) % per_chunk * _width;
  }
  std::uint32_t* _lists_of(std::uint32_t number, std::uint8_t type) const {
    return _chunks[(number - 1) / per_chunk].get() + (_width + type - 1U) * per_chunk;
  }
  std::span<const std::uint32_t> _run(std::uint32_t begin, std::uint32_t end) const {
    return {_words.data() + begin, _words.data() + end};
  }

  void _sort(std::uint8_t type);

  unsigned _n;
  unsigned _types;
  std::size_t _width;  // units of a row
  std::vector<std::uint32_t> _words;
  std::vector<std::unique_ptr<std::uint32_t[]>> _chunks;
  std::uint32_t _size = 0;
  std::vector<std::uint32_t> _lists;  // by type, from 1: how many there are
  std::uint8_t _sorted_type = 0;      // 0: none
  std::vector<std::uint32_t> _ends;   // by list, of the sorted type: where its sightings end
  std::vector<std::uint32_t> _sorted;
};

}  // namespace colx
