#pragma once

// For tests only, never linked into the program: contingency tables by listing, for every cell, the cells that feed it.
// Costs 4^N steps for N members.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace colx::reference {

struct PlainTables {
  // Builds the tables from the frequencies of all patterns, by type.
  explicit PlainTables(const std::vector<std::uint32_t>& frequencies)
      : contingency_table(frequencies), inverse_marginals(frequencies.size(), 0), expected_table(frequencies.size()) {
    const std::size_t cells = frequencies.size();
    // Strict supersets have higher numbers, so they are exact already when they are taken off.
    for (std::size_t i = cells; i-- > 0;) {
      for (std::size_t j = i + 1; j < cells; ++j) {
        if ((i | j) == j) contingency_table[i] -= contingency_table[j];
      }
    }
    for (std::size_t i = 0; i < cells; ++i) {
      for (std::size_t j = 1; j < cells; ++j) {
        if ((i & j) == 0) inverse_marginals[i] += contingency_table[j];
      }
    }
    const double total = frequencies[0];
    for (std::size_t i = 0; i < cells; ++i) {
      double expected = total;
      for (std::size_t bit = 1; bit < cells; bit *= 2) {
        const double marginal = (i & bit) != 0 ? frequencies[bit] : inverse_marginals[bit];
        expected = marginal / total * expected;
      }
      expected_table[i] = expected;
    }
  }

  std::vector<std::uint32_t> contingency_table;
  std::vector<std::uint32_t> inverse_marginals;
  std::vector<double> expected_table;
};

}  // namespace colx::reference
