#pragma once

// The formats of a table by their names.

#include <memory>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "companion/output.h"
#include "rows/columns.h"
#include "rows/merging.h"
#include "table/writer.h"

namespace colx::table {

enum class Format { tsv, csv, jsonl, markdown, ucs, aligned, sqlite, xlsx };

// The format of that name: tsv, csv, jsonl, markdown, ucs, table, sqlite, xlsx.
std::optional<Format> find_format(std::string_view name);

// A writer for the format.
std::unique_ptr<Writer> make_writer(Format format, Output& output, const Look& look);

// The columns of a ucs table: id, l1, l2, f, f1, f2, N, which are the rank, both lemmas, the frequencies and the total
// under other names, and then all given columns that are not among them. Computed measures begin with "am.", and dots
// stand for underscores, which names of that format do not have.
std::vector<Column> ucs_columns(std::span<const Column> columns);

// What the rows of a ucs table are besides: pair types, which are known by their two lemmas, dependent first. Within a
// relation they are those of each relation.
Merging merging_of_ucs(Merging merging);

}  // namespace colx::table
