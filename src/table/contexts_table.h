#pragma once

// The table of a contexts file, with one row for each context word.

#include "table/flat_table.h"

namespace colx::table {

// Reads the input into the table. Columns: type, and of each position lemma, tag, parent and relation, by which the
// N-gram or pattern is known; then word, word_tag, role (narrow or wide) and frequency. Throws input_error, after the
// rows before the fault, and usage_error, before anything is written.
void write_contexts(const Options& options, FlatTable& table);

}  // namespace colx::table
