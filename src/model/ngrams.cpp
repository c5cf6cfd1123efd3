#include "model/ngrams.h"

#include <algorithm>
#include <limits>

#include "base/config.h"

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

void NGramStore::count_patterns() {
  RecordTable& ngrams = records(NGram::_full_ngram_type);
  ngrams.release_index();
  _patterns.work_out(ngrams);
}

}  // namespace colx
