#pragma once

// How often the patterns of N-grams occur, worked out from the N-grams when all of them have been counted.
//
// A pattern occurs as often as the distinct N-grams that have it, together. There are far fewer of these than of
// occurrences, all are known, and patterns of one type can be added up by themselves, so this costs much less than
// finding and counting a record for every pattern of every occurrence. The patterns have no records of their own then.
//
// Patterns of one member are told apart by the member; those of more by two numbers, that of the pattern without its
// last member and that of the pattern of the last member alone. So every pattern is 64 bits, and nothing is compared
// but these.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/record_table.h"
#include "util/key_sums.h"
#include "util/zeroed_array.h"

namespace colx {

// Of every N-gram of a table the frequencies of all its patterns, itself included and the empty one left out: 4 bytes
// each.
class PatternFrequencies {
 public:
  // Takes the memory for as many N-grams, and somewhat more, so that a lack of it shows while they are counted; it is
  // not written to. Beside the frequencies these are 12 bytes an N-gram for the work. Throws std::bad_alloc.
  void make_room(std::uint32_t ngrams);

  // Works the frequencies out from a table of the full type that holds all N-grams. Takes 4 bytes more for some of the
  // patterns, and what there is no room for yet. Throws std::bad_alloc.
  void work_out(const RecordTable& ngrams);

  // How many different patterns of a type other than 0 there are.
  std::uint32_t different(std::uint8_t type) const { return _different[type]; }

  // The frequencies of the patterns of an N-gram, by its number in the table; entry t - 1 is that of type t.
  std::span<const std::uint32_t> of(std::uint32_t number) const {
    return {_cells.begin() + std::size_t{number} * _types, _types};
  }

  // Loads them into the cache.
  void prefetch(std::uint32_t number) const {
    constexpr std::size_t line = 64 / sizeof(std::uint32_t);
    const std::span<const std::uint32_t> row = of(number);
    for (std::size_t i = 0; i < row.size(); i += line)
      __builtin_prefetch(row.data() + i);
    __builtin_prefetch(&row.back());
  }

 private:
  std::size_t _types = 0;                 // all but 0
  std::vector<std::uint32_t> _different;  // by type
  std::size_t _room = 0;                  // in N-grams
  ZeroedArray<std::uint32_t> _cells;      // by N-gram and type
  KeySums _sums;
};

}  // namespace colx
