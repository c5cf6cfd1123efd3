#include "evaluation/measures.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace colx {

namespace {

__extension__ using wide = __int128;

}  // namespace

double _log10(double x) {
  return std::fabs(x) < std::numeric_limits<double>::epsilon() ? std::numeric_limits<double>::min() : std::log10(x);
}

namespace eval {

template <typename Count>
double chi_square_test(const EvaluationTablesOf<Count>& tables) {
  double sum = 0.0;
  for (std::size_t i = 0; i < tables.contingency_table().size(); ++i) {
    const double expected = tables.expected_table()[i];
    const double difference = static_cast<double>(tables.contingency_table()[i]) - expected;
    sum += difference * difference / expected;
  }
  return sum;
}

template <typename Count>
double log_likelihood_ratio(const EvaluationTablesOf<Count>& tables) {
  double sum = 0.0;
  for (std::size_t i = 0; i < tables.contingency_table().size(); ++i) {
    const auto observed = static_cast<double>(tables.contingency_table()[i]);
    if (observed != 0.0) sum += observed * _log10(observed / tables.expected_table()[i]);
  }
  return 2.0 * sum;
}

template <typename Count>
double mutual_information(const EvaluationTablesOf<Count>& tables) {
  const auto f = [&](std::size_t type) { return static_cast<double>(tables.frequencies()[type]); };
  const double total = f(0);
  const double ratio = f(3) / total / (f(2) / total * (f(1) / total));
  return _log10(ratio) / std::log10(2.0);
}

template <>
double pearsons_coefficient(const EvaluationTables& tables) {
  const auto& o = tables.contingency_table();
  const std::uint32_t numerator = o[3] * o[0] - o[2] * o[1];
  const std::uint32_t denominator = (o[3] + o[2]) * (o[3] + o[1]) * ((o[0] + o[2]) * (o[0] + o[1]));
  return numerator / std::sqrt(static_cast<double>(denominator));
}

template <>
double pearsons_coefficient(const EvaluationTablesOf<std::uint64_t>& tables) {
  const auto& o = tables.contingency_table();
  // Two cells add up to the total at the most, so that their product fits into 126 bits.
  const wide numerator = static_cast<wide>(o[3]) * o[0] - static_cast<wide>(o[2]) * o[1];
  const auto sum = [&](std::size_t a, std::size_t b) { return static_cast<double>(o[a] + o[b]); };
  return static_cast<double>(numerator) / std::sqrt(sum(3, 2) * sum(3, 1) * (sum(0, 2) * sum(0, 1)));
}

template <typename Count>
double t_test(const EvaluationTablesOf<Count>& tables) {
  const auto frequency = static_cast<double>(tables.frequencies()[3]);
  const auto total = static_cast<double>(tables.frequencies()[0]);
  return (frequency - tables.expected_table()[3]) / std::sqrt(frequency * (1.0 - frequency / total));
}

template <typename Count>
double z_score(const EvaluationTablesOf<Count>& tables) {
  const double expected = tables.expected_table()[3];
  const auto frequency = static_cast<double>(tables.frequencies()[3]);
  const auto total = static_cast<double>(tables.frequencies()[0]);
  return (frequency - expected) / std::sqrt(expected * (1.0 - expected / total));
}

template double chi_square_test(const EvaluationTables&);
template double chi_square_test(const EvaluationTablesOf<std::uint64_t>&);
template double log_likelihood_ratio(const EvaluationTables&);
template double log_likelihood_ratio(const EvaluationTablesOf<std::uint64_t>&);
template double mutual_information(const EvaluationTables&);
template double mutual_information(const EvaluationTablesOf<std::uint64_t>&);
template double t_test(const EvaluationTables&);
template double t_test(const EvaluationTablesOf<std::uint64_t>&);
template double z_score(const EvaluationTables&);
template double z_score(const EvaluationTablesOf<std::uint64_t>&);

}  // namespace eval

}  // namespace colx
