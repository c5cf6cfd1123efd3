#pragma once

// The first rows of a sorted table, found without sorting the others.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "rows/ordered_rows.h"

namespace colx::table {

// Gives back the first `limit` rows only, and holds no more than these at any time.
class BestRows : public OrderedRows {
 public:
  explicit BestRows(std::uint64_t limit) : _limit(limit) {}

  void add(const KeyedRow& row) override;
  void sort() override;
  bool next(KeyedRow& row) override;

 private:
  struct Entry {
    std::string bytes;  // the key, then the text
    std::size_t key_size = 0;
    std::size_t members_size = 0;
    std::uint64_t added = 0;

    // Key and member lines, which decide.
    std::string_view sorted_by() const { return std::string_view(bytes).substr(0, key_size + members_size); }
  };

  static bool _comes_before(const Entry& a, const Entry& b);

  std::uint64_t _limit;
  std::uint64_t _added = 0;
  std::size_t _taken = 0;
  std::vector<Entry> _entries;  // a heap with the last row in front
};

}  // namespace colx::table
