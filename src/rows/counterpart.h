#pragma once

// What another output datafile knows of an N-gram, and what follows from the two counts.

#include <cstdint>

#include "rows/association.h"

namespace colx::table {

// The N-gram in the other file.
struct Counterpart {
  bool is_in_file = true;       // whether the file that is compared has the N-gram itself
  std::uint64_t frequency = 0;  // 0 when the other file does not have it
  std::uint64_t total = 0;      // of the cells of any N-gram of the other file; 0 when it has none
};

// G2 of the table of f and n - f in this file, f' and n' - f' in the other (Rayson & Garside 2000 with all four cells,
// as Dunning 1993), with the sign of f / n - f' / n' unless that is not wanted. Not a number when a total is 0.
// Requires frequency <= total in both files, and totals up to 2^53.
double keyness(std::uint64_t frequency, std::uint64_t total, const Counterpart& other, Sign sign);

// log2 of (f / n) / (f' / n') (Hardie 2014, without his 0.5 for zeros): infinite when one frequency is 0, and not a
// number when both are or a total is.
double keyness_log_ratio(std::uint64_t frequency, std::uint64_t total, const Counterpart& other);

}  // namespace colx::table
