#pragma once

// Rows waiting for their place in a sorted table.

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "rows/block.h"
#include "rows/columns.h"

namespace colx::table {

struct SortOrder {
  Column column;
  bool ascending = false;
};

// An order from its name on the command line: a column for descending order, with `+` before it for ascending. Throws
// usage_error when there is no such column or it is the rank.
SortOrder parse_sort_order(std::string_view name);

// Collects blocks and gives them back in order. Numbers are compared as they are printed, computed measures to twelve
// digits, with not-a-number last in both directions; texts byte by byte. Equal rows follow the bytes of their member
// lines, upwards, and then the order in which they were added, so the result is the same everywhere. With a limit only
// that many rows are held at any time.
class SortedRows {
 public:
  SortedRows(SortOrder order, std::optional<std::uint64_t> limit) : _order(std::move(order)), _limit(limit) {}

  // Keeps a copy of the block's text.
  void add(const Row& row);

  // Puts all rows in order; to be called once, after the last one was added.
  void sort();

  std::size_t size() const { return _entries.size(); }

  // The text of a block, in order once sorted.
  std::string_view text(std::size_t i) const { return {_entries[i].bytes.get(), _entries[i].text_size}; }

 private:
  struct Entry {
    double number = 0;
    std::uint64_t prefix = 0;
    std::uint64_t added = 0;
    std::unique_ptr<char[]> bytes;  // text of the block, then the key when that is a text
    std::uint32_t members_size = 0;
    std::uint32_t text_size = 0;
    std::uint32_t key_size = 0;

    std::string_view members() const { return {bytes.get(), members_size}; }
    std::string_view key() const { return {bytes.get() + text_size, key_size}; }
  };

  // What decides about a row before it is copied.
  struct Candidate {
    double number;
    std::uint64_t prefix;  // of the text that decides first, see _prefix; most ties end here, without a look at memory
    std::string_view key;
    std::string_view members;
    std::uint64_t added;
  };

  static Candidate _candidate(const Entry& entry) {
    return {entry.number, entry.prefix, entry.key(), entry.members(), entry.added};
  }

  bool _comes_before(const Candidate& a, const Candidate& b) const;

  SortOrder _order;
  std::optional<std::uint64_t> _limit;
  std::uint64_t _added = 0;
  std::vector<Entry> _entries;  // with a limit a heap with the last row in front
};

}  // namespace colx::table
