#pragma once

// Counts rows whose keys begin alike, in sorted rows.

#include <cstdint>

namespace colx::table {

class AlikeRows {
 public:
  explicit AlikeRows(std::uint64_t most) : _most(most) {}

  // Whether the next row, whose key begins with these bytes, is among the first ones of its kind.
  bool admits(std::uint64_t beginning) {
    if (beginning != _beginning) _seen = 0;
    _beginning = beginning;
    return _seen++ < _most;
  }

 private:
  std::uint64_t _most;
  std::uint64_t _beginning = 0;
  std::uint64_t _seen = 0;
};

}  // namespace colx::table
