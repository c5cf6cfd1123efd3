#pragma once

// The contingency table of an N-gram and the counts that follow from it.

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

#include "rows/block.h"

namespace colx::table {

// Cell i counts the occurrences that agree with the N-gram in exactly the words of the set bits of i; the highest of
// the n bits is for the first word.
struct Contingency {
  std::size_t n = 0;
  std::span<const std::uint64_t> cells;              // 2^n; owned by the caller
  std::uint64_t total = 0;                           // sum of all cells
  std::uint64_t frequency = 0;                       // of the whole N-gram: the last cell
  std::array<std::uint64_t, largest_n> marginals{};  // of each single word: sum of the cells that have it

  Contingency(std::size_t words, std::span<const std::uint64_t> observed);

  // Frequency of the whole N-gram to be expected if its words were independent: total * product of marginal / total.
  // Extended precision, as measures near independence are small differences.
  long double expected_frequency() const;

  // The same for any cell; an absent word enters with total - marginal.
  long double expected(std::size_t cell) const;

  // How far a cell is above its expected count, or a negative number: exact before it is rounded for pairs, and for
  // longer N-grams to some twelve digits however close both are.
  long double excess(std::size_t cell) const;

  // The same of the whole N-gram.
  long double excess() const { return excess(cells.size() - 1); }
};

}  // namespace colx::table
