#include "evaluation/ngrams_processor.h"

namespace colx {

NGramsProcessor::NGramsProcessor(const NGramStore& store)
    : _store(store),
      _full(store.records(NGram::_full_ngram_type)),
      _position(_full.begin()),
      _frequencies(NGram::_types_count, 0) {}

bool NGramsProcessor::next() {
  if (_position == _full.end()) return false;
  _current = *_position;
  _frequencies[NGram::_full_ngram_type] = _current->frequency();
  for (std::uint8_t type = 0; type < NGram::_full_ngram_type; ++type) {
    // Every pattern of a counted N-gram has been counted with it, so it is there.
    _frequencies[type] = _store.get(*NGramToken::get(*_current, type))->frequency();
  }
  ++_position;
  return true;
}

}  // namespace colx
