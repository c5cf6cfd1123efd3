#pragma once

// Contingency tables of one N-gram: how often each combination of its members was present and absent together, and how
// often it would have been if the members were independent.
//
// Cells are numbered like the types of N-grams: bit N - k stands for member k, the first member being the highest bit,
// and a set bit says that the member is present in its position. For N = 2: 0 neither, 1 the second alone, 2 the first
// alone, 3 both.

#include <cstdint>
#include <span>
#include <vector>

namespace colx {

// The tables of one N-gram after another, each of 2^N entries; built in the same memory again and again. Building costs
// N 2^N steps for each table. Counts have 32 bits, or 64.
template <typename Count>
class EvaluationTablesOf {
 public:
  EvaluationTablesOf() = default;

  // Builds the tables from the frequencies of an N-gram and of all its patterns, entry t being that of type t: the last
  // one its own, the first one the number of all N-grams.
  explicit EvaluationTablesOf(std::span<const Count> frequencies) { assign(frequencies); }
  void assign(std::span<const Count> frequencies);

  const std::vector<Count>& frequencies() const { return _frequencies; }

  // Observed cell counts, by inclusion and exclusion modulo 2^32, or 2^64: exactly these members instead of at least
  // these. They sum to the number of all N-grams.
  const std::vector<Count>& contingency_table() const { return _contingency_table; }

  // By cell: how many N-grams have none of its members. Those that share no member at all (cell 0) are deliberately not
  // among them. Modulo 2^32, or 2^64.
  const std::vector<Count>& inverse_marginals() const { return _inverse_marginals; }

  // Expected cell counts if the members were independent, from the frequencies of those present and the inverse
  // marginals of those absent.
  const std::vector<double>& expected_table() const { return _expected_table; }

 private:
  std::vector<Count> _frequencies;
  std::vector<Count> _contingency_table;
  std::vector<Count> _inverse_marginals;
  std::vector<double> _expected_table;
};

// What ngrex counts with.
using EvaluationTables = EvaluationTablesOf<std::uint32_t>;

extern template class EvaluationTablesOf<std::uint32_t>;
extern template class EvaluationTablesOf<std::uint64_t>;

}  // namespace colx
