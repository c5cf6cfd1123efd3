#pragma once

// The table of a statistics file, with one row for each datafile and one for all of them.

#include "table/flat_table.h"

namespace colx::table {

// Reads the input into the table. Columns: scope (datafile or overall), datafile (its name), n (words of an N-gram),
// and the counters words, sentences, extracted, passed and filtered. Throws input_error, after the rows before the
// fault, and usage_error, before anything is written. `holds_tabs` says whether the format of the table has a way to
// write a TAB, which names may contain.
void write_statistics(const Options& options, FlatTable& table, bool holds_tabs);

}  // namespace colx::table
