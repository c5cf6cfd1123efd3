#pragma once

// The columns of a report: arrays of numbers that the page takes over as they are.

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "rows/text_store.h"

namespace colx::report {

// The numbers of one column, in memory as they are in the file: little-endian.
using Numbers = std::variant<std::vector<std::uint8_t>, std::vector<std::uint16_t>, std::vector<std::uint32_t>,
                             std::vector<double>>;

struct Column {
  std::string name;
  Numbers numbers;
};

// How the page calls the type of the numbers: u8, u16, u32 or f64.
std::string_view type_name(const Column& column);

// How many numbers there are, and their bytes.
std::size_t length_of(const Column& column);
std::string_view bytes_of(const Column& column);

// Numbers in 16 bits, or in 32 when one of them needs more.
Numbers narrowed(const std::vector<std::uint32_t>& numbers);

// Counts in 32 bits, or as doubles when one of them needs more; these are exact up to 2^53.
Numbers counts(const std::vector<std::uint64_t>& numbers);

// Appends two columns for a pool of texts: NAME.bytes, one text behind another, and NAME.ends, where each ends. Throws
// output_error when they take 4 GiB or more.
void append_texts(const table::TextStore& texts, std::string_view name, std::vector<Column>& columns);

}  // namespace colx::report
