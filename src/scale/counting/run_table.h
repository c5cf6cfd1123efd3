#pragma once

// The N-grams of the full type that have been counted since the memory was full last.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "base/limits.h"
#include "model/occurrence_batch.h"
#include "model/record_table.h"
#include "spill/segment_file.h"
#include "util/pool.h"

namespace colx::scale {

// What tells a file of counted N-grams.
inline constexpr std::string_view run_kind = "runs";

// Counts batches of occurrences, which it numbers.
class RunTable {
 public:
  // Takes about `memory` bytes, but always room for some batches.
  explicit RunTable(std::size_t memory);

  bool empty() const { return _table->size() == 0; }

  // Whether the next batch may go beyond the memory, or beyond what a record counts.
  bool full() const {
    return _table->size() + OccurrenceBatch::capacity > _most_records ||
           (_occurrences > 0 && _occurrences + OccurrenceBatch::capacity > limits::frequency);
  }

  // Counts the occurrences of a batch, the first of which has this number.
  void count(const OccurrenceBatch& batch, std::uint64_t first);

  // Writes what has been counted to a file, by buckets of as many bits of the hash, each as a segment, and forgets it.
  // A record is its members, its count and the number of its first occurrence.
  FileMark write(const std::string& path, unsigned bucket_bits);

 private:
  void _clear();

  std::size_t _most_records;
  std::unique_ptr<VoidPool> _pool;
  std::unique_ptr<RecordTable> _table;
  std::vector<std::uint64_t> _first;  // by record
  std::uint64_t _occurrences = 0;     // counted since
};

}  // namespace colx::scale
