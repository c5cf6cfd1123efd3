#include "model/ngrams.h"

#include <algorithm>
#include <limits>

#include "base/config.h"
#include "base/limits.h"

namespace colx {

NGramStore::NGramStore(std::uint32_t records_per_block) {
  init(records_per_block);
}

void NGramStore::init(std::uint32_t records_per_block) {
  if (records_per_block == 0 || !_pools.empty()) return;
  _context_memory = std::make_unique<ContextMemory>();
  _pools.reserve(settings::n + 1U);
  _pools.emplace_back(0U);  // the empty N-gram is never allocated
  for (unsigned k = 1; k <= settings::n; ++k)
    _pools.emplace_back(NGram::_ngrams_memory_sizes[k] * records_per_block);
  _tables.reserve(NGram::_types_count);
  for (std::uint8_t type = 1; type < NGram::_types_count; ++type) {
    _tables.emplace_back(type, _pools[NGram::_members_count[type]]);
  }
}

void NGramStore::count_empty(std::size_t occurrences) {
  constexpr std::size_t largest = std::numeric_limits<std::uint32_t>::max();
  _empty_frequency = static_cast<std::uint32_t>(std::min(largest, _empty_frequency + occurrences));
}

// In a corpus of a language a list is not much shorter than what was seen, and much longer than the occurrences: half
// of all N-grams occur once. Lists pay where the same sentences, or the few N-grams that a filter admits, come again
// and again. Keeping goes through all lists; that it waits for sightings in proportion to what these hold bounds what
// is done for each sighting.
bool NGramStore::contexts_are_due() const {
  constexpr std::uint64_t least_records = 1U << 18;
  constexpr std::uint64_t list_units_per_record = 64;
  const Sightings& sightings = _context_memory->sightings;
  std::uint64_t records = 0;
  for (const RecordTable& table : _tables)
    records += table.size();
  records = std::max({records, least_records, _context_memory->pool.taken() / list_units_per_record});
  const std::uint64_t links = std::uint64_t{sightings.size()} * NGram::_full_ngram_type;
  return links > limits::sightings * records || sightings.full();
}

void NGramStore::keep_contexts() {
  for (const RecordTable& table : _tables) {
    for (std::uint32_t i = 0; i < table.size(); ++i)
      contexts(*table.record(i)).keep();
  }
  _context_memory->sightings.clear();
}

void NGramStore::count_patterns() {
  RecordTable& ngrams = records(NGram::_full_ngram_type);
  ngrams.release_index();
  _patterns.work_out(ngrams);
}

}  // namespace colx
