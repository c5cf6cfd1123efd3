#include "evaluation/evaluation.h"

#include <cstddef>

namespace colx {

namespace {

// Calls `take(without, with)`, member by member, for all pairs of cells that differ in that member alone.
template <typename Take>
void _for_each_member(std::size_t cells, const Take& take) {
  for (std::size_t bit = 1; bit < cells; bit *= 2) {
    for (std::size_t block = 0; block < cells; block += 2 * bit) {
      for (std::size_t i = block; i < block + bit; ++i)
        take(i, i + bit);
    }
  }
}

}  // namespace

template <typename Count>
void EvaluationTablesOf<Count>::assign(std::span<const Count> frequencies) {
  const std::size_t cells = frequencies.size();
  _frequencies.assign(frequencies.begin(), frequencies.end());

  // Member by member, "at least these" becomes "at least these and not that one".
  _contingency_table.assign(frequencies.begin(), frequencies.end());
  _for_each_member(
      cells, [&](std::size_t without, std::size_t with) { _contingency_table[without] -= _contingency_table[with]; });

  // Member by member, a cell without that one gives those that have none of the cell's members so far; taking off those
  // that have this one leaves those that have it neither.
  _inverse_marginals.assign(frequencies.begin(), frequencies.end());
  _for_each_member(cells, [&](std::size_t without, std::size_t with) {
    _inverse_marginals[with] = _inverse_marginals[without] - _inverse_marginals[with];
  });
  for (Count& marginal : _inverse_marginals)
    marginal -= _contingency_table[0];

  // The factors are multiplied in ascending order of the members' bits, so that the rounding is that of each cell
  // worked out alone. Cells that agree in their low bits share the product so far.
  const auto total = static_cast<double>(frequencies[0]);
  _expected_table.assign(cells, total);
  for (std::size_t bit = 1; bit < cells; bit *= 2) {
    const double absent = static_cast<double>(_inverse_marginals[bit]) / total;
    const double present = static_cast<double>(_frequencies[bit]) / total;
    for (std::size_t i = 0; i < bit; ++i) {
      const double product = _expected_table[i];
      _expected_table[i] = absent * product;
      _expected_table[i | bit] = present * product;
    }
  }
}

template class EvaluationTablesOf<std::uint32_t>;
template class EvaluationTablesOf<std::uint64_t>;

}  // namespace colx
