#include "evaluation/ngrams_processor.h"

#include <algorithm>
#include <string>

#include "base/config.h"
#include "base/errors.h"

namespace colx {

NGramsProcessor::NGramsProcessor(const NGramStore& store, std::uint32_t least_frequency)
    : _store(store),
      _full(store.records(NGram::_full_ngram_type)),
      _least_frequency(least_frequency),
      _order(_full.listed_order()),
      _frequencies(window * NGram::_types_count) {}

bool NGramsProcessor::next() {
  if (++_current >= _entries.size()) _fill();
  if (_entries.empty()) {
    _stepped = _order.size() - _position;
    return false;
  }
  _stepped = _entries[_current].stepped;
  return true;
}

// Takes the next N-grams that are frequent enough into the window, with the frequencies of all their patterns.
void NGramsProcessor::_fill() {
  constexpr std::size_t ahead = 16;
  _entries.clear();
  _current = 0;
  std::size_t stepped = 0;
  for (std::size_t i = _position; i < _order.size() && _entries.size() < window; ++i) {
    if (i + ahead < _order.size()) {
      __builtin_prefetch(_full.record(_order[i + ahead]));
      if (_store.patterns_last()) _store.patterns().prefetch(_order[i + ahead]);
    }
    const NGram& record = *_full.record(_order[i]);
    ++stepped;
    if (_full.frequency(record) < _least_frequency) continue;
    _entries.push_back({&record, _order[i], stepped});
    _position = i + 1;
    stepped = 0;
  }
  for (std::size_t e = 0; e < _entries.size(); ++e)
    _frequencies[e * NGram::_types_count] = _store.empty_frequency();
  if (!_store.patterns_last()) {
    _look_up_patterns();
    return;
  }
  for (std::size_t e = 0; e < _entries.size(); ++e) {
    const std::span<const std::uint32_t> frequencies = _store.patterns().of(_entries[e].number);
    std::copy(frequencies.begin(), frequencies.end(), &_frequencies[e * NGram::_types_count + 1]);
  }
}

void NGramsProcessor::_look_up_patterns() {
  _batch.clear();
  for (const Entry& entry : _entries) {
    _batch.add();
    for (unsigned m = 0; m < settings::n; ++m)
      _batch.set_last(m, entry.record->member(m));
  }
  for (std::uint8_t type = 1; type < NGram::_full_ngram_type; ++type)
    _look_up(type);
  for (std::size_t e = 0; e < _entries.size(); ++e)
    _frequencies[e * NGram::_types_count + NGram::_full_ngram_type] = _full.frequency(*_entries[e].record);
}

void NGramsProcessor::_look_up(std::uint8_t type) {
  const RecordTable& records = _store.records(type);
  records.find(_batch, [&](std::size_t entry, const NGram* pattern) {
    if (pattern == nullptr) {
      throw fatal_error("A pattern of type " + std::to_string(type) + " of a counted N-gram is not in the store!");
    }
    _frequencies[entry * NGram::_types_count + type] = records.frequency(*pattern);
  });
}

}  // namespace colx
