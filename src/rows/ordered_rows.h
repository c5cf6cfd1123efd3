#pragma once

// Rows waiting for their place in a sorted table.

#include <cstddef>
#include <string_view>

namespace colx::table {

// A row that waits: the text of its block, of which the member lines come first, and the key by which it is sorted, as
// append_key makes it.
struct KeyedRow {
  std::string_view key;
  std::string_view text;
  std::size_t members_size = 0;
};

// Takes rows in any order and gives them back in that of their keys. Rows with equal keys follow the bytes of their
// member lines, upwards, and then the order in which they were added, so the result is the same everywhere.
class OrderedRows {
 public:
  OrderedRows() = default;
  virtual ~OrderedRows() = default;

  OrderedRows(const OrderedRows&) = delete;
  OrderedRows& operator=(const OrderedRows&) = delete;

  // Keeps a copy of the texts of the row.
  virtual void add(const KeyedRow& row) = 0;

  // Puts all rows in order; to be called once, after the last one was added.
  virtual void sort() = 0;

  // Takes the next row, whose texts stay valid until the next call; false behind the last one. Requires sort().
  virtual bool next(KeyedRow& row) = 0;
};

}  // namespace colx::table
