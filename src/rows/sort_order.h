#pragma once

// In which order the rows of a table stand: columns to sort by, and the bytes that stand for a row in that order.

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "rows/collation.h"
#include "rows/columns.h"

namespace colx::table {

struct SortKey {
  Column column;
  bool ascending = false;
};

// The first key decides, among equal rows the next.
struct SortOrder {
  std::vector<SortKey> keys;
  std::optional<Collation> collation;  // of texts; nothing: code points, which is the order of their bytes
};

// An order from the command line: columns separated by commas, with + before a column for ascending and - for
// descending order; without a sign texts ascend and numbers descend. Throws usage_error when there is no such column or
// it is the rank.
SortOrder parse_sort_order(std::string_view list);

// The columns by which rows are in one group, from the command line; in order, groups ascend. Throws usage_error when
// there is no such column or it is the rank.
SortOrder parse_group_columns(std::string_view list);

// Appends the key of a row: keys compared byte by byte are in the order, none is the beginning of another, and equal
// rows have equal keys. Numbers are compared with all their digits, computed measures with twelve, since what is beyond
// them is the rounding of the computation; not-a-number comes last in both directions.
void append_key(const SortOrder& order, const Row& row, std::string& key);

}  // namespace colx::table
