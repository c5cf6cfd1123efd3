#pragma once

// The walk over all counted N-grams at writing time, each with the frequencies of all its patterns.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "model/ngrams.h"

namespace colx {

// Goes through the N-grams of the full type in the order in which they are listed. Patterns are looked up for some
// N-grams at a time, so that the memory for all of them can be asked for before any of it is needed.
class NGramsProcessor {
 public:
  // The store must outlive the processor and not change meanwhile; records of the full type need not be to be found.
  // N-grams less frequent than `least_frequency` are passed over before any of their patterns is looked up.
  NGramsProcessor(const NGramStore& store, std::uint32_t least_frequency);

  // Makes the next N-gram the current one. Returns false when there is none left. Throws fatal_error when a pattern of
  // an N-gram is not in the store, which then was not filled by whole occurrences.
  bool next();

  // How many N-grams the last call of next has gone through, passed over or not.
  std::size_t stepped() const { return _stepped; }

  const NGram& current() const { return *_entries[_current].record; }

  // By type: the frequencies of the patterns of the current N-gram. That of type 0 is the number of all occurrences.
  std::span<const std::uint32_t> frequencies() const {
    return {_frequencies.data() + _current * NGram::_types_count, NGram::_types_count};
  }

 private:
  static constexpr std::size_t window = 64;

  struct Entry {
    const NGram* record;
    std::uint32_t number;
    std::size_t stepped;
  };

  void _fill();
  void _look_up_patterns();
  void _look_up(std::uint8_t type);

  const NGramStore& _store;
  const RecordTable& _full;
  std::uint32_t _least_frequency;
  ZeroedArray<std::uint32_t> _order;
  std::size_t _position = 0;  // in _order
  std::size_t _stepped = 0;
  std::size_t _current = 0;  // in _entries
  std::vector<Entry> _entries;
  OccurrenceBatch _batch;                   // the entries as what they once were
  std::vector<std::uint32_t> _frequencies;  // by entry and type
};

}  // namespace colx
