#include "model/ngrams.h"

#include "run/config.h"

namespace colx {

NGramStore::NGramStore(std::uint32_t records_per_block) {
  init(records_per_block);
}

void NGramStore::init(std::uint32_t records_per_block) {
  if (records_per_block == 0 || !_pools.empty() || !_sets.empty()) return;
  _sets.resize(NGram::_types_count);
  _pools.reserve(settings::n + 1U);
  _pools.emplace_back(0U);  // the empty N-gram is never allocated
  for (unsigned k = 1; k <= settings::n; ++k)
    _pools.emplace_back(NGram::_ngrams_memory_sizes[k] * records_per_block);
}

std::pair<NGram*, bool> NGramStore::insert(const NGram& token) {
  const std::uint8_t type = token.type();
  if (type == 0) return {&_empty, false};
  NGramSet& set = _sets[type];
  if (NGram* found = set.find(token)) return {found, false};
  const unsigned k = token.members_count();
  NGram* const record = NGram::build(_pools[k].get_raw_memory(NGram::_ngrams_memory_sizes[k]), token);
  set.insert(record);
  return {record, true};
}

const NGram* NGramStore::get(const NGram& token) const {
  const std::uint8_t type = token.type();
  return type == 0 ? &_empty : _sets[type].find(token);
}

}  // namespace colx
