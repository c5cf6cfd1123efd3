#pragma once

// The walk over all counted N-grams at writing time, each with the frequencies of all its patterns.

#include <cstdint>
#include <vector>

#include "model/ngrams.h"

namespace colx {

// Goes through the N-grams of the full type in the order of the store, which must not change meanwhile.
class NGramsProcessor {
 public:
  explicit NGramsProcessor(const NGramStore& store);

  // Makes the next N-gram the current one and looks its patterns up. Returns false when there is none left.
  bool next();

  const NGram& current() const { return *_current; }

  // By type: the frequencies of the patterns of the current N-gram. That of type 0 is the number of all occurrences.
  const std::vector<std::uint32_t>& frequencies() const { return _frequencies; }

 private:
  const NGramStore& _store;
  const NGramSet& _full;
  NGramSet::const_iterator _position;
  const NGram* _current = nullptr;
  std::vector<std::uint32_t> _frequencies;
};

}  // namespace colx
