#pragma once

// Reads a statistics file of ngrex datafile by datafile, in constant memory.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "rows/line_reader.h"

namespace colx::table {

// The counters of a datafile, or of all of them.
struct DatafileCounters {
  std::string name;         // of the datafile; empty for all of them
  bool is_overall = false;  // the sums, modulo 2^32 as ngrex writes them
  std::uint64_t words = 0;
  std::uint64_t sentences = 0;
  std::uint64_t extracted = 0;
  std::optional<std::uint64_t> passed;  // this and the next only where ngrex had a filter
  std::optional<std::uint64_t> filtered;
};

// A file or standard input, plain or compressed with gzip, as a sequence of counters, the sums last.
class StatisticsReader {
 public:
  // Opens a file; `-` is standard input. Throws input_error.
  explicit StatisticsReader(const std::string& path) : _lines(path) {}

  // Takes the next counters; false at the end of a complete file. Throws input_error with the name of the input and the
  // number of the line when it is malformed or truncated.
  bool next(DatafileCounters& counters);

  // The words of an N-gram; 0 before the first counters.
  std::size_t n() const { return _n; }

 private:
  void _read_counters(DatafileCounters& counters);
  void _read_n(std::string_view line);
  void _read_stores();
  std::uint64_t _count_of(std::string_view line, std::string_view label) const;
  std::uint64_t _read_count(std::string_view label);
  void _read_exactly(std::string_view expected);

  LineReader _lines;
  std::size_t _n = 0;
  bool _knows_filter = false;
  bool _has_filter = false;
  bool _at_end = false;
};

}  // namespace colx::table
