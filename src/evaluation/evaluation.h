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
// N 2^N steps for each table.
class EvaluationTables {
 public:
  EvaluationTables() = default;

  // Builds the tables from the frequencies of an N-gram and of all its patterns, entry t being that of type t: the last
  // one its own, the first one the number of all N-grams.
  explicit EvaluationTables(std::span<const std::uint32_t> frequencies) { assign(frequencies); }
  void assign(std::span<const std::uint32_t> frequencies);

  const std::vector<std::uint32_t>& frequencies() const { return _frequencies; }

  // Observed cell counts, by inclusion and exclusion modulo 2^32: exactly these members instead of at least these. They
  // sum to the number of all N-grams.
  const std::vector<std::uint32_t>& contingency_table() const { return _contingency_table; }

  // By cell: how many N-grams have none of its members. Those that share no member at all (cell 0) are deliberately not
  // among them. Modulo 2^32.
  const std::vector<std::uint32_t>& inverse_marginals() const { return _inverse_marginals; }

  // Expected cell counts if the members were independent, from the frequencies of those present and the inverse
  // marginals of those absent.
  const std::vector<double>& expected_table() const { return _expected_table; }

 private:
  std::vector<std::uint32_t> _frequencies;
  std::vector<std::uint32_t> _contingency_table;
  std::vector<std::uint32_t> _inverse_marginals;
  std::vector<double> _expected_table;
};

}  // namespace colx
