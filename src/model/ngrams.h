#pragma once

// The store of all counted N-grams: a table of records for each type, the records themselves in one pool for each
// number of members. The number of occurrences extracted is the frequency of the empty N-gram, which is kept as a mere
// counter.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "model/context.h"
#include "model/ngram.h"
#include "model/pattern_frequencies.h"
#include "model/record_table.h"
#include "util/pool.h"

namespace colx {

// Counts records for the whole run; nothing is ever removed, and records never move.
class NGramStore {
 public:
  // Makes an empty store and, unless the argument is 0, initialises it.
  explicit NGramStore(std::uint32_t records_per_block);

  // Makes a table for each type and a pool for each number of members, its blocks holding `records_per_block` records,
  // at least RecordTable::records_per_chunk. Does nothing when the argument is 0 or the store has been initialised. To
  // be called after NGram::init.
  void init(std::uint32_t records_per_block);

  // Counts occurrences of the empty N-gram; saturates at the largest 32-bit number.
  void count_empty(std::size_t occurrences);

  // Frequency of the empty N-gram.
  std::uint32_t empty_frequency() const { return _empty_frequency; }

  // The records of a type other than 0.
  RecordTable& records(std::uint8_t type) { return _tables[type - 1U]; }
  const RecordTable& records(std::uint8_t type) const { return _tables[type - 1U]; }

  // Says that of every occurrence only the N-gram is counted and its patterns are worked out from all N-grams in the
  // end, which is possible if every occurrence is counted whole and no contexts are collected.
  void count_patterns_last() { _patterns_last = true; }
  bool patterns_last() const { return _patterns_last; }

  // Takes the memory that the patterns of the N-grams so far will need, so that a lack of it shows while they are
  // counted. Throws std::bad_alloc.
  void make_room_for_patterns() { _patterns.make_room(records(NGram::_full_ngram_type).size()); }

  // Works the patterns out; to be called once, when all N-grams have been counted, if they are counted last. Finding
  // records of the full type is given up. Throws std::bad_alloc.
  void count_patterns();

  // What has been worked out.
  const PatternFrequencies& patterns() const { return _patterns; }

  // How many different patterns of a type other than 0 there are, wherever they are counted.
  std::uint32_t different(std::uint8_t type) const {
    return _patterns_last ? _patterns.different(type) : records(type).size();
  }

  // The context words of one of the records; only when contexts are collected.
  ContextList contexts(NGram& record) const { return {record.context_handle(), record.type(), *_context_memory}; }

  // The occurrences that those words are around; only when contexts are collected.
  Sightings& sightings() { return _context_memory->sightings; }

  // Whether there are so many occurrences of each record that lists of their context words take less memory.
  bool contexts_are_due() const;

  // Keeps the context words of all records as lists and forgets the occurrences. Throws std::bad_alloc.
  void keep_contexts();

 private:
  std::uint32_t _empty_frequency = 0;
  std::vector<VoidPool> _pools;
  std::vector<RecordTable> _tables;  // by type, from 1
  bool _patterns_last = false;
  PatternFrequencies _patterns;
  std::unique_ptr<ContextMemory> _context_memory;
};

}  // namespace colx
