#include "model/record_table.h"

#include <string>

#include "base/config.h"
#include "base/errors.h"
#include "model/listed_order.h"
#include "model/ngram_hash.h"

namespace colx {

RecordTable::RecordTable(std::uint8_t type, VoidPool& pool, std::uint32_t most_records)
    : _type(type),
      _members_count(NGram::_members_count[type]),
      _record_size(NGram::_ngrams_memory_sizes[_members_count]),
      _pool(pool),
      _most_records(most_records) {
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

NGram* RecordTable::add(std::span<const NGram::Member> members, std::uint32_t frequency) {
  if (frequency == 0) return nullptr;
  std::uint64_t hash = 0;
  for (unsigned m = 0; m < _members_count; ++m)
    hash += member_hash(members[m], _positions[m]);
  const std::uint32_t found = _index.find(hash, [&](std::uint32_t number) {
    for (unsigned m = 0; m < _members_count; ++m) {
      if (!(record(number)->member(m) == members[m])) return false;
    }
    return true;
  });
  NGram* const counted = found == CompactIndex::none ? _make(hash, members.data()) : record(found);
  counted->add(found == CompactIndex::none ? frequency - 1 : frequency, _overflows);
  return counted;
}

NGram* RecordTable::_make(std::uint64_t hash, const NGram::Member* members) {
  if (_size == _most_records) throw too_many_records(_type, _most_records);
  if (_index.size() != _size) {
    throw fatal_error("N-grams of type " + std::to_string(_type) + " cannot be counted any more: their index is gone!");
  }
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
