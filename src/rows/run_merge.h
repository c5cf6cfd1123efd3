#pragma once

// Merges sorted runs of rows in a file.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "rows/ordered_rows.h"
#include "rows/packed_row.h"
#include "rows/temporary_file.h"

namespace colx::table {

// Where packed rows in their order stand in a file.
struct Run {
  std::uint64_t begin = 0;
  std::uint64_t end = 0;
};

// The rows of one run, one after another.
class RunReader {
 public:
  // Reads from `file`, which must outlive the reader, `buffer` bytes at a time.
  RunReader(const TemporaryFile& file, Run run, std::size_t buffer);

  // Takes the next row, which stays valid until the next call; false behind the last one. Throws input_error.
  bool next();

  const char* packed() const { return _buffer.data() + _row; }
  const PackedPrefix& prefix() const { return _prefix; }

 private:
  void _need(std::size_t size);

  const TemporaryFile* _file;
  Run _rest;  // what is not in the buffer yet
  std::vector<char> _buffer;
  std::size_t _row = 0;   // where the row stands in the buffer
  std::size_t _next = 0;  // and the one behind it
  std::size_t _end = 0;
  PackedPrefix _prefix;
};

// All rows of all runs in order; among equal rows those of earlier runs come first. As every run is in memory with one
// buffer only, `memory` bytes are enough for any number of rows.
class RunMerge {
 public:
  // The file must outlive the merge.
  RunMerge(const TemporaryFile& file, const std::vector<Run>& runs, std::size_t memory);

  // Takes the next row, whose texts stay valid until the next call; false behind the last one. Throws input_error.
  bool next(KeyedRow& row);

  // What the key of the row just taken begins with.
  std::uint64_t beginning() const { return _readers[_heap.front()].prefix().high; }

 private:
  bool _comes_before(std::size_t a, std::size_t b) const;
  void _settle(std::size_t from);

  std::vector<RunReader> _readers;
  std::vector<std::size_t> _heap;  // readers, the one with the first row in front
  bool _begun = false;
};

}  // namespace colx::table
