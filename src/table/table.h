#pragma once

// The run of ngrex-table, from an output datafile to a table.

#include "table/options.h"
#include "table/output.h"

namespace colx::table {

// Reads the input and writes its table to `output`. `on_terminal` chooses the default format, `bold` whether the header
// of an aligned table is. Throws UsageError before anything is written, InputError after the rows before the fault have
// been written, and OutputError.
void write_table(const Options& options, Output& output, bool on_terminal, bool bold);

// The whole program: the result is its exit status, 0, 1 (input or output) or 2 (usage).
int run(int argc, const char* const* argv);

}  // namespace colx::table
