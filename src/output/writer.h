#pragma once

// The output datafile: a block of lines for each N-gram that passes sieves and thresholds. See docs/formats.md.

#include <ostream>
#include <vector>

#include "evaluation/evaluation.h"

namespace colx {

// Writes the whole output datafile under a progress bar. Blocks come in the order of the store. The caller looks at the
// state of the stream.
void write(std::ostream& out);

// Writes the observed cells as one line.
void _print_tables(std::ostream& os, const EvaluationTables& t);

// Writes the values of the measures as one line, two of them or six.
void _print_stats(std::ostream& os, const std::vector<double>& v);

}  // namespace colx
