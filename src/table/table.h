#pragma once

// The run of ngrex-table, from an output datafile to a table.

#include <string>
#include <vector>

#include "companion/output.h"
#include "table/options.h"

namespace colx::table {

// Reads the input and writes its table to `output`. `on_terminal` chooses the default format, `bold` whether the header
// of an aligned table is. Throws usage_error before anything is written, output_error, reader_gone, and
// input_error, for standard output after the rows before the fault have been written.
void write_table(const Options& options, Output& output, bool on_terminal, bool bold);

// The whole program but for the telling of failures, which it throws; the result is the exit status.
int run(const std::vector<std::string>& arguments);

}  // namespace colx::table
