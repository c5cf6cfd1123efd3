#include "scale/counting/run_table.h"

#include <algorithm>
#include <string>

#include "base/config.h"
#include "scale/counting/records.h"
#include "spill/encoding.h"

namespace colx::scale {

namespace {

// For each record besides its own bytes: a slot of the index, the number of its first occurrence, in a vector that may
// have room for as many again, and its place while it is written.
constexpr std::size_t bytes_beside = 8 + 16 + 4 + 8;

// So many records before they are written they are loaded into the cache.
constexpr std::uint32_t records_ahead = 16;

}  // namespace

RunTable::RunTable(std::size_t memory)
    : _most_records(
          std::max(memory / (NGram::_ngrams_memory_sizes[settings::n] + bytes_beside), 2 * OccurrenceBatch::capacity)) {
  _clear();
}

void RunTable::_clear() {
  _table.reset();
  const std::size_t record_size = NGram::_ngrams_memory_sizes[settings::n];
  _pool = std::make_unique<VoidPool>(static_cast<std::uint32_t>(RecordTable::records_per_chunk * record_size));
  // How many there may be is for those to say who know which are the same, and which are refused.
  _table = std::make_unique<RecordTable>(NGram::_full_ngram_type, *_pool, CompactIndex::largest_size);
  _first.clear();
  _occurrences = 0;
}

void RunTable::count(const OccurrenceBatch& batch, std::uint64_t first) {
  _table->count(
      batch, [](std::size_t) { return true; },
      [&](std::size_t occurrence, const NGram*) {
        if (_table->size() > _first.size()) _first.push_back(first + occurrence);
      });
  _occurrences += batch.size();
}

FileMark RunTable::write(const std::string& path, unsigned bucket_bits) {
  const std::uint32_t size = _table->size();
  const auto members_count = static_cast<std::size_t>(settings::n);
  std::vector<std::uint32_t> bucket(size);
  std::vector<std::uint32_t> begins((std::size_t{1} << bucket_bits) + 1, 0);
  for (std::uint32_t i = 0; i < size; ++i) {
    const NGram& record = *_table->record(i);
    std::uint64_t hash = 0;
    for (unsigned m = 0; m < members_count; ++m)
      hash += member_hash(record.member(m), m);
    bucket[i] = static_cast<std::uint32_t>(bucket_of(hash, bucket_bits));
    ++begins[bucket[i] + 1];
  }
  for (std::size_t b = 1; b < begins.size(); ++b)
    begins[b] += begins[b - 1];
  std::vector<std::uint32_t> order(size);
  std::vector<std::uint32_t> next(begins.begin(), begins.end() - 1);
  for (std::uint32_t i = 0; i < size; ++i)
    order[next[bucket[i]]++] = i;

  SegmentWriter file(path, run_kind);
  std::string bytes;
  const std::size_t longest = members_count * NGram::Member::size + 2 * longest_short_number;
  for (std::size_t b = 0; b + 1 < begins.size(); ++b) {
    bytes.resize((begins[b + 1] - begins[b]) * longest + sizeof(std::uint64_t));
    char* to = bytes.data();
    for (std::uint32_t i = begins[b]; i < begins[b + 1]; ++i) {
      if (i + records_ahead < size) {
        __builtin_prefetch(_table->record(order[i + records_ahead]));
        __builtin_prefetch(&_first[order[i + records_ahead]]);
      }
      const NGram& record = *_table->record(order[i]);
      for (unsigned m = 0; m < members_count; ++m)
        to = put_member(to, record.member(m));
      to = put_short(to, _table->frequency(record));
      to = put_short(to, _first[order[i]]);
    }
    file.add({bytes.data(), static_cast<std::size_t>(to - bytes.data())});
  }
  _clear();
  return file.finish();
}

}  // namespace colx::scale
