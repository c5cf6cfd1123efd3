#pragma once

// A table as a workbook of one sheet, in the Office Open XML format (xlsx); docs/ngrex-table.1 says what is in it.

#include <memory>

#include "companion/output.h"
#include "table/writer.h"

namespace colx::table {

// Writes as the rows come, in constant memory. Throws usage_error when the output is no file, and output_error for a
// row or a text that a sheet has no room for.
std::unique_ptr<Writer> make_workbook_writer(Output& output, const Look& look);

}  // namespace colx::table
