#pragma once

// What is counted of one datafile for the statistics file.

#include <cstdint>
#include <string>

namespace colx {

// The counters of one datafile and its name, the path by which it was opened.
struct NamedDataFileStats {
  std::uint32_t words_count = 0;
  std::uint32_t sentences_count = 0;
  std::uint32_t extracted_count = 0;  // N-gram occurrences
  std::uint32_t passed_count = 0;     // of these, let through by the morphological filter
  std::uint32_t filtered_count = 0;   // of these, refused by it
  std::string name;
};

}  // namespace colx
