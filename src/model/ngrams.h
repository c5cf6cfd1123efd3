#pragma once

// The store of all counted N-grams: one set of records for each type, the records themselves in one pool for each
// number of members. The store is also the record of the empty N-gram, whose counter is the number of occurrences
// extracted.

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "model/ngram.h"
#include "model/ngram_set.h"
#include "model/pool.h"

namespace colx {

// Counts records for the whole run; nothing is ever removed, and records never move.
class NGramStore {
 public:
  // Makes an empty store and, unless the argument is 0, initialises it.
  explicit NGramStore(std::uint32_t records_per_block);

  // Makes a set for each type and a pool for each number of members, its blocks holding `records_per_block` records.
  // Does nothing when the argument is 0 or the store has been initialised. To be called after NGram::init.
  void init(std::uint32_t records_per_block);

  // Finds the record that equals a token, or copies the token into the store with its frequency 1. Returns the record
  // and whether it is new. A token of type 0 gives the empty N-gram and false. Throws std::bad_alloc and then holds
  // what it held before.
  std::pair<NGram*, bool> insert(const NGram& token);

  // Returns the stored record that equals a token, or null. A token of type 0 gives the empty N-gram.
  const NGram* get(const NGram& token) const;

  // The records of a type, in the order in which the output files list them.
  const NGramSet& records(std::uint8_t type) const { return _sets[type]; }

 private:
  NGram _empty;
  std::vector<VoidPool> _pools;
  std::vector<NGramSet> _sets;
};

}  // namespace colx
