#pragma once

// For tests only, never linked into the program: all decompositions of a sum as complete tuples, by the plain recursive
// definition of their order. The number of tuples grows like C(sum + parts - 1, sum), zeros included.

#include <cstddef>
#include <vector>

namespace colx::reference {

using Tuple = std::vector<unsigned>;

// Appends D(sum, parts) to `out`: every tuple of `parts` non-negative numbers that add up to `sum`, the last number
// varying slowest. Returns how many tuples `out` had before.
inline std::size_t plain_decompositions(unsigned sum, unsigned parts, std::vector<Tuple>& out) {
  const std::size_t before = out.size();
  if (parts == 0) return before;
  if (parts == 1) {
    out.push_back({sum});
    return before;
  }
  if (sum == 0) {
    out.push_back(Tuple(parts, 0));
    return before;
  }
  for (unsigned first = 0; first <= sum; ++first) {
    for (std::size_t i = plain_decompositions(sum - first, parts - 1, out); i < out.size(); ++i)
      out[i].push_back(first);
  }
  return before;
}

}  // namespace colx::reference
