#pragma once

// All rows of a sorted table, however many, in bounded memory.

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "rows/alike_rows.h"
#include "rows/memory_region.h"
#include "rows/ordered_rows.h"
#include "rows/packed_row.h"
#include "rows/run_merge.h"
#include "rows/temporary_file.h"

namespace colx::table {

// Sorts in memory as long as the rows fit, and otherwise writes sorted runs to a temporary file and merges them. Rows
// are packed one after another from the front of the memory, and entries that are sorted in their place from its back.
class SortedRows : public OrderedRows {
 public:
  static constexpr std::uint64_t no_limit = std::numeric_limits<std::uint64_t>::max();

  // `memory` in bytes is exceeded by some buffers, and by a row that does not fit. Of the rows whose keys have the same
  // first eight bytes only the first `most_alike` are given back.
  explicit SortedRows(std::size_t memory, std::uint64_t most_alike = no_limit);

  // Throws output_error when the temporary file cannot be written.
  void add(const KeyedRow& row) override;
  void sort() override;

  // Throws input_error when the temporary file cannot be read.
  bool next(KeyedRow& row) override;

 private:
  // A row in memory, with the beginning of what decides about its place, where most comparisons end.
  struct Entry {
    PackedPrefix prefix;
    std::uint64_t place = 0;  // in the region; grows with every row that is added
  };

  Entry* _entries() const;
  bool _comes_before(const Entry& a, const Entry& b) const;
  void _sort_entries();
  void _write_run();

  std::size_t _memory;
  std::unique_ptr<MemoryRegion> _region;
  std::size_t _used = 0;   // bytes of the rows in memory
  std::size_t _count = 0;  // of the rows in memory
  std::size_t _taken = 0;  // of them
  AlikeRows _alike;

  std::unique_ptr<TemporaryFile> _file;  // nothing: all rows fit so far
  std::vector<Run> _runs;
  std::unique_ptr<RunMerge> _merge;
};

}  // namespace colx::table
