#include "evaluation/thresholds.h"

#include <cmath>
#include <cstddef>

#include "base/config.h"
#include "evaluation/measures.h"
#include "model/ngram.h"

namespace colx {

namespace {

// Computes the values of the measures that have a threshold, as far as they are needed to decide, and decides.
template <typename Count>
bool _passes_thresholds(const EvaluationTablesOf<Count>& tables, const std::vector<MeasureOf<Count>>& measures,
                        std::vector<double>& values) {
  bool passed = true;
  for (std::size_t i = 0; i < measures.size(); ++i) {
    if (!(measures[i].threshold > 0.0)) continue;
    values[i] = measures[i].evaluate(tables);
    passed = values[i] >= measures[i].threshold || std::isnan(values[i]);
    if (passed != settings::all_thresholds_together) return passed;
  }
  return passed;
}

}  // namespace

template <typename Count>
std::vector<MeasureOf<Count>> measures() {
  const Thresholds& thresholds = settings::thresholds;
  std::vector<MeasureOf<Count>> list = {{eval::chi_square_test, thresholds.chi_square},
                                        {eval::log_likelihood_ratio, thresholds.log_likelihood}};
  if (settings::n == 2) {
    list.push_back({eval::mutual_information, thresholds.mutual_information});
    list.push_back({eval::pearsons_coefficient, thresholds.pearson});
    list.push_back({eval::t_test, thresholds.t_test});
    list.push_back({eval::z_score, thresholds.z_score});
  }
  return list;
}

template <typename Count>
bool evaluate(const EvaluationTablesOf<Count>& tables, const std::vector<MeasureOf<Count>>& measures,
              std::vector<double>& values) {
  if (settings::sieves.estimated_frequency > tables.expected_table()[NGram::_full_ngram_type]) return false;
  values.assign(measures.size(), 0.0);
  if (!_passes_thresholds(tables, measures, values)) return false;
  for (std::size_t i = 0; i < measures.size(); ++i) {
    if (!(values[i] > 0.0)) values[i] = measures[i].evaluate(tables);
  }
  return true;
}

template std::vector<MeasureOf<std::uint32_t>> measures();
template std::vector<MeasureOf<std::uint64_t>> measures();
template bool evaluate(const EvaluationTablesOf<std::uint32_t>&, const std::vector<MeasureOf<std::uint32_t>>&,
                       std::vector<double>&);
template bool evaluate(const EvaluationTablesOf<std::uint64_t>&, const std::vector<MeasureOf<std::uint64_t>>&,
                       std::vector<double>&);

}  // namespace colx
