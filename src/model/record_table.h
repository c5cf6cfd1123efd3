#pragma once

// The records of one type, numbered in order of first sight, and the index by which they are found. Records stand in
// chunks that never move. Finding one costs a cache miss for its slot in the index and one for the record; both are
// asked for in advance for a whole batch of occurrences.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "base/limits.h"
#include "model/ngram.h"
#include "model/occurrence_batch.h"
#include "util/compact_index.h"
#include "util/pool.h"
#include "util/zeroed_array.h"

namespace colx {

// Holds the records of one type. Nothing is ever removed.
class RecordTable {
 public:
  // The type must not be 0. The pool must serve chunks of `records_per_chunk` records of this type's size, and outlive
  // the table. `most_records` is at most what the index can number.
  RecordTable(std::uint8_t type, VoidPool& pool, std::uint32_t most_records = limits::records);

  static constexpr std::uint32_t records_per_chunk = 2048;

  std::uint32_t size() const { return _size; }

  NGram* record(std::uint32_t number) const {
    return reinterpret_cast<NGram*>(_chunks[number / records_per_chunk] + number % records_per_chunk * _record_size);
  }

  // Counts those occurrences of a batch for which `admits(occurrence)` holds, in their order: raises the frequency of
  // the record with their members at the significant positions, or makes it. Calls `counted(occurrence, record)` after
  // each; the record of one that is not admitted is null. Throws fatal_error when there are more records than the table
  // takes, or when they are not to be found any more, and std::bad_alloc, after which they are not.
  template <typename Admits, typename Counted>
  void count(const OccurrenceBatch& batch, const Admits& admits, const Counted& counted);

  // Counts `frequency` occurrences of the pattern that has these members at the significant positions, one for each in
  // ascending position; its record, which is returned, is then as after so many calls of count. With a frequency of 0
  // nothing is made and null returned. Context words are none of its business: those of a record that is there stay, a
  // new one has none. Throws as count does.
  NGram* add(std::span<const NGram::Member> members, std::uint32_t frequency);

  // The number of occurrences of a record of this table, carried ones included; saturates at the largest 32-bit number.
  std::uint32_t frequency(const NGram& record) const { return record.frequency(_overflows); }

  // Calls `found(occurrence, record)` for all occurrences of a batch, with the record of their members, or null.
  template <typename Found>
  void find(const OccurrenceBatch& batch, const Found& found) const;

  // The numbers of all records in the order in which the output files list them.
  ZeroedArray<std::uint32_t> listed_order() const;

  // Gives up finding records, and the memory that it takes. Nothing can be counted afterwards, unless there is nothing
  // yet.
  void release_index() { _index.clear(); }

 private:
  // What an occurrence looks like under this type, which has K significant positions.
  template <unsigned K>
  struct Pattern {
    std::array<NGram::Member, K> members;
    std::uint64_t hash;
    NGram* candidate;  // the record that it probably is; null if it was not there when the batch was begun
  };

  // Calls `take.template operator()<K>()` for the K of this type.
  template <unsigned K = constants::max_grammity, typename Take>
  void _with_members_count(const Take& take) const {
    if constexpr (K > 0) {
      if (_members_count == K) {
        take.template operator()<K>();
      } else {
        _with_members_count<K - 1>(take);
      }
    }
  }

  // Calls `take(occurrence, pattern)` for all occurrences of a batch when the memory that finding them needs is on its
  // way.
  template <unsigned K, typename Take>
  void _for_each_pattern(const OccurrenceBatch& batch, const Take& take) const;

  template <unsigned K>
  NGram* _find(const Pattern<K>& pattern) const;

  std::uint64_t _hash_of(std::uint32_t number) const;
  NGram* _make(std::uint64_t hash, const NGram::Member* members);

  std::uint8_t _type;
  unsigned _members_count;
  std::array<unsigned, constants::max_grammity> _positions{};  // the significant ones, ascending
  std::size_t _record_size;
  VoidPool& _pool;
  std::vector<unsigned char*> _chunks;
  std::uint32_t _size = 0;
  std::uint32_t _most_records;
  NGram::Overflows _overflows;
  CompactIndex _index;
};

template <unsigned K, typename Take>
void RecordTable::_for_each_pattern(const OccurrenceBatch& batch, const Take& take) const {
  std::array<std::uint64_t, OccurrenceBatch::capacity> hashes;
  for (std::size_t o = 0; o < batch.size(); ++o) {
    std::uint64_t hash = 0;
    for (unsigned m = 0; m < K; ++m)
      hash += batch.hash(o, _positions[m]);
    hashes[o] = hash;
    _index.prefetch(hash);
  }
  std::array<NGram*, OccurrenceBatch::capacity> candidates;
  for (std::size_t o = 0; o < batch.size(); ++o) {
    const std::uint32_t candidate = _index.candidate(hashes[o]);
    candidates[o] = candidate == CompactIndex::none ? nullptr : record(candidate);
    __builtin_prefetch(candidates[o]);
  }
  for (std::size_t o = 0; o < batch.size(); ++o) {
    Pattern<K> pattern;
    pattern.hash = hashes[o];
    pattern.candidate = candidates[o];
    for (unsigned m = 0; m < K; ++m)
      pattern.members[m] = batch.member(o, _positions[m]);
    take(o, pattern);
  }
}

template <unsigned K>
NGram* RecordTable::_find(const Pattern<K>& pattern) const {
  const auto equal = [&](const NGram& stored) {
    for (unsigned m = 0; m < K; ++m) {
      if (!(stored.member(m) == pattern.members[m])) return false;
    }
    return true;
  };
  if (pattern.candidate != nullptr && equal(*pattern.candidate)) return pattern.candidate;
  const std::uint32_t found = _index.find(pattern.hash, [&](std::uint32_t number) { return equal(*record(number)); });
  return found == CompactIndex::none ? nullptr : record(found);
}

template <typename Admits, typename Counted>
void RecordTable::count(const OccurrenceBatch& batch, const Admits& admits, const Counted& counted) {
  _with_members_count([&]<unsigned K>() {
    _for_each_pattern<K>(batch, [&](std::size_t occurrence, const Pattern<K>& pattern) {
      NGram* record = nullptr;
      if (admits(occurrence)) {
        record = _find(pattern);
        if (record != nullptr) {
          record->inc(_overflows);
        } else {
          record = _make(pattern.hash, pattern.members.data());
        }
      }
      counted(occurrence, record);
    });
  });
}

template <typename Found>
void RecordTable::find(const OccurrenceBatch& batch, const Found& found) const {
  _with_members_count([&]<unsigned K>() {
    _for_each_pattern<K>(batch, [&](std::size_t occurrence, const Pattern<K>& pattern) {
      found(occurrence, static_cast<const NGram*>(_find(pattern)));
    });
  });
}

}  // namespace colx
