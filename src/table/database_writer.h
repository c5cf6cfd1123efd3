#pragma once

// A table as a database of SQLite; docs/ngrex-table.1 describes its tables.

#include <memory>
#include <span>
#include <vector>

#include "companion/output.h"
#include "rows/columns.h"
#include "table/writer.h"

namespace colx::table {

// The output must be a file. Rows are taken for N-grams: columns of single words become the table `members`, by their
// names; cells the view `cells`; the rank is the id. With the name of a flat table there is that one in their place.
// Throws usage_error when there is no file.
std::unique_ptr<Writer> make_database_writer(Output& output, const Look& look);

// What a database holds of N-grams of n words: everything about the members, all cells, and the given columns.
std::vector<Column> database_columns(std::span<const Column> columns, std::size_t n);

}  // namespace colx::table
