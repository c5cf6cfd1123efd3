#pragma once

// The writers that make text, one function for each; formats are described in docs/ngrex-table.1.

#include <memory>

#include "companion/output.h"
#include "table/writer.h"

namespace colx::table {

std::unique_ptr<Writer> make_tsv_writer(Output& output, const Look& look);
std::unique_ptr<Writer> make_csv_writer(Output& output, const Look& look);
std::unique_ptr<Writer> make_json_lines_writer(Output& output, const Look& look);
std::unique_ptr<Writer> make_markdown_writer(Output& output, const Look& look);
std::unique_ptr<Writer> make_aligned_writer(Output& output, const Look& look);

}  // namespace colx::table
