#pragma once

// Decompositions of a sum into shares of the children of a node, in the order that the enumeration of subtrees
// requires.
//
// All decompositions of s into k non-negative parts are C(s + k - 1, s) tuples; for a word with many children almost
// all of their entries are zero. So tuples are never made: a decomposition is given as its non-zero shares alone, and
// shares that a child cannot serve cut off everything that would contain them.

#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace colx {

// One non-zero part of a decomposition: which child, counted from 0, and how much.
struct Share {
  std::uint32_t child;
  std::uint32_t size;

  friend bool operator==(const Share&, const Share&) = default;
};

// Lists decompositions in the order in which the last part varies slowest: the highest child with a share ascending,
// within it the size of its share ascending, within that the rest among the children below it, in the same order.
class SumDecompositions {
 public:
  // Tells whether a child can take a share of this size, 1 or more.
  using Admits = std::function<bool(std::uint32_t child, std::uint32_t size)>;

  // Receives the shares of one decomposition by ascending child; they are valid during the call.
  using Visit = std::function<void(std::span<const Share>)>;

  // Visits every decomposition of `sum` into `parts` parts whose shares are all admitted. A sum or number of parts of 0
  // has none.
  void for_each(std::uint32_t sum, std::uint32_t parts, const Admits& admits, const Visit& visit);

 private:
  void _extend(std::uint32_t rest, std::uint32_t parts, const Admits& admits, const Visit& visit);

  std::vector<Share> _shares;  // by descending child while a decomposition is put together
  std::vector<Share> _ascending;
};

}  // namespace colx
