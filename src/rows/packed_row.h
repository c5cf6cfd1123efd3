#pragma once

// A row as one piece of bytes, in memory and in files: three sizes, the key, the text.

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "rows/ordered_rows.h"

namespace colx::table {

struct PackedSizes {
  std::uint32_t key = 0;
  std::uint32_t text = 0;
  std::uint32_t members = 0;  // of the text

  std::size_t whole() const { return sizeof(PackedSizes) + key + text; }
};

// The bytes that a row takes.
std::size_t packed_size(const KeyedRow& row);

// Writes a row; there must be packed_size(row) bytes.
void pack(const KeyedRow& row, char* to);

// The sizes of the row that stands there, of which only they need to be read yet.
PackedSizes sizes_of(const char* packed);

// The row that stands there.
KeyedRow unpack(const char* packed);

// Compares two rows by their keys and, when those are equal, by their member lines; negative, zero or positive.
int compare_packed(const char* a, const char* b);

// The first bytes of key and member lines as two numbers, which are in the order of the rows wherever they differ. What
// all member lines begin with, the position and a TAB, is left out.
struct PackedPrefix {
  std::uint64_t high = 0;
  std::uint64_t low = 0;

  auto operator<=>(const PackedPrefix&) const = default;
};
PackedPrefix prefix_of(const KeyedRow& row);

}  // namespace colx::table
