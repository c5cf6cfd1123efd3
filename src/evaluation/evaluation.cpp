#include "evaluation/evaluation.h"

#include <cstddef>
#include <utility>

#include "model/ngram.h"
#include "run/config.h"

namespace colx {

std::vector<std::vector<std::uint32_t>> EvaluationTables::_bits_for_cont_table;
std::vector<std::vector<std::uint32_t>> EvaluationTables::_bits_for_inv_table;

void EvaluationTables::init() {
  const std::uint32_t cells = NGram::_types_count;
  _bits_for_cont_table.assign(cells, {});
  _bits_for_inv_table.assign(cells, {});
  for (std::uint32_t i = 0; i < cells; ++i) {
    for (std::uint32_t j = 0; j < cells; ++j) {
      if (j != i && (i | j) == j) _bits_for_cont_table[i].push_back(j);
      if (j != 0 && (i & j) == 0) _bits_for_inv_table[i].push_back(j);
    }
  }
}

EvaluationTables::EvaluationTables(std::vector<std::uint32_t> frequencies)
    : _frequencies(std::move(frequencies)),
      _contingency_table(_frequencies),
      _inverse_marginals(_frequencies.size(), 0),
      _expected_table(_frequencies.size(), 1.0) {
  const std::size_t cells = _frequencies.size();

  // Strict supersets have higher numbers, so they are exact already when they are taken off.
  for (std::size_t t = cells - 1; t-- > 0;) {
    for (const std::uint32_t j : _bits_for_cont_table[t])
      _contingency_table[t] -= _contingency_table[j];
  }
  for (std::size_t i = 0; i < cells; ++i) {
    for (const std::uint32_t j : _bits_for_inv_table[i])
      _inverse_marginals[i] += _contingency_table[j];
  }

  const double total = _frequencies[0];
  for (std::size_t i = 0; i < cells; ++i) {
    double& expected = _expected_table[i];
    expected = total * expected;
    for (unsigned k = 0; k < settings::n; ++k) {
      const std::size_t bit = std::size_t{1} << k;
      const double marginal = (i & bit) != 0 ? _frequencies[bit] : _inverse_marginals[bit];
      expected = marginal / total * expected;
    }
  }
}

}  // namespace colx
