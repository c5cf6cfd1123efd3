#include "model/record_table.h"

#include "base/config.h"
#include "model/listed_order.h"
#include "model/ngram_hash.h"

namespace colx {

RecordTable::RecordTable(std::uint8_t type, VoidPool& pool)
    : _type(type),
      _members_count(NGram::_members_count[type]),
      _record_size(NGram::_ngrams_memory_sizes[_members_count]),
      _pool(pool) {
  for (unsigned i = 0, m = 0; i < settings::n; ++i) {
    if (NGram::significant(type, i)) _positions[m++] = i;
  }
}

std::uint64_t RecordTable::_hash_of(std::uint32_t number) const {
  const NGram& stored = *record(number);
  std::uint64_t hash = 0;
  for (unsigned m = 0; m < _members_count; ++m)
    hash += member_hash(stored.member(m), _positions[m]);
  return hash;
}

NGram* RecordTable::_make(std::uint64_t hash, const NGram::Member* members) {
  if (_size % records_per_chunk == 0) {
    _chunks.push_back(static_cast<unsigned char*>(_pool.get_raw_memory(records_per_chunk * _record_size)));
  }
  NGram* const made = NGram::build(record(_size), _type, {members, _members_count});
  _index.insert(hash, [&](std::uint32_t number) { return _hash_of(number); });
  ++_size;
  return made;
}

ZeroedArray<std::uint32_t> RecordTable::listed_order() const {
  ZeroedArray<std::uint32_t> weak_hashes(_size);
  for (std::uint32_t i = 0; i < _size; ++i)
    weak_hashes[i] = NGramHashCounter::count_hash(*record(i), _members_count);
  return colx::listed_order(weak_hashes);
}

}  // namespace colx
