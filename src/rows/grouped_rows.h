#pragma once

// Rows in groups, as a dictionary has them: the best ones of each group together.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "rows/ordered_rows.h"
#include "rows/sorted_rows.h"
#include "rows/text_set.h"

namespace colx::table {

// Groups follow one another by their size, which is the sum of the frequencies of all their rows, downwards, groups of
// one size by name; or by name alone.
enum class GroupOrder { size, name };

// Takes rows in any order and gives back the groups, and in each group its first rows in the order of their keys.
// Memory is that of SortedRows and one entry a group.
class GroupedRows {
 public:
  // `memory` in bytes is exceeded by the groups. Of each group `most` rows are given back.
  GroupedRows(GroupOrder order, std::size_t memory, std::uint64_t most = SortedRows::no_limit);

  // Adds a row to the group of that name, whose bytes are in the order of names. Throws output_error when a temporary
  // file cannot be written.
  void add(std::string_view group, std::uint64_t frequency, const KeyedRow& row);

  // Puts all rows in order; to be called once, after the last one was added.
  void sort();

  // Takes the next row, whose texts stay valid until the next call; false behind the last one. Requires sort().
  bool next(KeyedRow& row) { return _ordered.next(row); }

 private:
  // Where each group stands among all.
  std::vector<std::uint64_t> _places() const;

  GroupOrder _order;
  std::unordered_map<std::string, std::uint64_t, TextHash, std::equal_to<>> _numbers;  // of the groups, from 0
  std::vector<std::uint64_t> _sizes;                                                   // by number
  std::unique_ptr<SortedRows> _numbered;  // by the numbers of their groups, as sizes are not known yet
  SortedRows _ordered;
  std::string _key;
};

}  // namespace colx::table
