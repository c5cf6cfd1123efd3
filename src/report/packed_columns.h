#pragma once

// Columns as one text that can stand in a page: one after another, compressed with gzip, in base64.

#include <cstddef>
#include <span>
#include <vector>

#include "companion/output.h"
#include "report/column.h"

namespace colx::report {

// Where each column begins when they are unpacked: multiples of eight bytes, so that a page can take each for an array.
std::vector<std::size_t> offsets_of(std::span<const Column> columns);

// Writes the text, the same for the same columns.
void write_packed(std::span<const Column> columns, Output& output);

}  // namespace colx::report
