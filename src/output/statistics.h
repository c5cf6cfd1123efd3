#pragma once

// The two statistics files. See docs/formats.md.

#include <ostream>

namespace colx {

// Writes the counts of each datafile, their sums and the sizes of the stores.
void write_stats(std::ostream& out);

// Writes how many N-grams each morphological rule let through, for each datafile and for the whole run.
void write_morphologic_filter_stats(std::ostream& out);

}  // namespace colx
