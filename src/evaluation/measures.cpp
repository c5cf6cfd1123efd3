#include "evaluation/measures.h"

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace colx {

double _log10(double x) {
  return std::fabs(x) < std::numeric_limits<double>::epsilon() ? std::numeric_limits<double>::min() : std::log10(x);
}

namespace eval {

double chi_square_test(const EvaluationTables& tables) {
  double sum = 0.0;
  for (std::size_t i = 0; i < tables.contingency_table().size(); ++i) {
    const double expected = tables.expected_table()[i];
    const double difference = tables.contingency_table()[i] - expected;
    sum += difference * difference / expected;
  }
  return sum;
}

double log_likelihood_ratio(const EvaluationTables& tables) {
  double sum = 0.0;
  for (std::size_t i = 0; i < tables.contingency_table().size(); ++i) {
    const double observed = tables.contingency_table()[i];
    if (observed != 0.0) sum += observed * _log10(observed / tables.expected_table()[i]);
  }
  return 2.0 * sum;
}

double mutual_information(const EvaluationTables& tables) {
  const auto& f = tables.frequencies();
  const double total = f[0];
  const double ratio = f[3] / total / (f[2] / total * (f[1] / total));
  return _log10(ratio) / std::log10(2.0);
}

double pearsons_coefficient(const EvaluationTables& tables) {
  const auto& o = tables.contingency_table();
  const std::uint32_t numerator = o[3] * o[0] - o[2] * o[1];
  const std::uint32_t denominator = (o[3] + o[2]) * (o[3] + o[1]) * ((o[0] + o[2]) * (o[0] + o[1]));
  return numerator / std::sqrt(static_cast<double>(denominator));
}

double t_test(const EvaluationTables& tables) {
  const double frequency = tables.frequencies()[3];
  return (frequency - tables.expected_table()[3]) / std::sqrt(frequency * (1.0 - frequency / tables.frequencies()[0]));
}

double z_score(const EvaluationTables& tables) {
  const double expected = tables.expected_table()[3];
  return (tables.frequencies()[3] - expected) / std::sqrt(expected * (1.0 - expected / tables.frequencies()[0]));
}

}  // namespace eval

}  // namespace colx
