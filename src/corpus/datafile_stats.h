#pragma once

// What is counted of one datafile for the statistics file.

#include <cstdint>
#include <string>

namespace colx {

// The counters of one datafile and its name, the path by which it was opened.
template <typename Count>
struct NamedDataFileStatsOf {
  Count words_count = 0;
  Count sentences_count = 0;
  Count extracted_count = 0;  // N-gram occurrences
  Count passed_count = 0;     // of these, let through by the morphological filter
  Count filtered_count = 0;   // of these, refused by it
  std::string name;
};

// What ngrex counts with.
using NamedDataFileStats = NamedDataFileStatsOf<std::uint32_t>;

}  // namespace colx
