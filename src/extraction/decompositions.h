#pragma once

// Decompositions of a sum into shares of the children of a node, in the order that the enumeration of subtrees
// requires: the highest child with a share ascending, within it the size of its share ascending, within that the rest
// among the children below it, in the same order. (This is the order in which the last of all parts varies slowest.)
//
// All decompositions of s into k non-negative parts are C(s + k - 1, s) tuples; for a word with many children almost
// all of their entries are zero. So tuples are never made: a decomposition is given as its non-zero shares alone, and
// children that together cannot take what is left are never entered, so that every step of the search leads to a
// decomposition.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "base/config.h"

namespace colx {

// One non-zero part of a decomposition: which child, counted from 0, and how much.
struct Share {
  std::uint32_t child;
  std::uint32_t size;

  friend bool operator==(const Share&, const Share&) = default;
};

// Lists the decompositions of sums of less than constants::max_grammity.
class SumDecompositions {
 public:
  // Calls `visit(shares)` for every decomposition of `sum`, 1 or more, into shares that the children can take.
  // capacities[c] is the sum of what the children below child c can take, each of them anything from 1 to its own
  // limit; there is one entry more than there are children, the first of which is 0. Shares come by descending child
  // and are valid during the call.
  template <typename Visit>
  void for_each(std::uint32_t sum, std::span<const std::uint32_t> capacities, const Visit& visit) {
    _count = 0;
    _extend(sum, capacities, visit);
  }

 private:
  template <typename Visit>
  void _extend(std::uint32_t rest, std::span<const std::uint32_t> capacities, const Visit& visit) {
    if (rest == 0) {
      visit(std::span<const Share>(_shares.data(), _count));
      return;
    }
    for (std::uint32_t child = 0; child + 1 < capacities.size(); ++child) {
      const std::uint32_t below = capacities[child];
      const std::uint32_t limit = capacities[child + 1] - below;
      for (std::uint32_t size = rest > below ? rest - below : 1; size <= rest && size <= limit; ++size) {
        _shares[_count++] = {child, size};
        _extend(rest - size, capacities.first(child + 1), visit);
        --_count;
      }
    }
  }

  std::array<Share, constants::max_grammity> _shares;
  std::size_t _count = 0;
};

}  // namespace colx
