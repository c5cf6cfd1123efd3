#pragma once

// The decision which N-grams reach the output datafile: two sieves, then the thresholds of the measures.

#include <cstdint>
#include <vector>

#include "evaluation/evaluation.h"

namespace colx {

// A measure with the least value that the settings ask of it.
template <typename Count>
struct MeasureOf {
  double (*evaluate)(const EvaluationTablesOf<Count>&);
  double threshold;
};
using Measure = MeasureOf<std::uint32_t>;

// The measures that exist for the N of the settings, in the order in which they are written: chi-square, log-likelihood
// ratio and, for N = 2, mutual information, Pearson's coefficient, t test and z score.
template <typename Count = std::uint32_t>
std::vector<MeasureOf<Count>> measures();

// Applies the sieve of expected frequencies and the thresholds, one met or all met as the settings ask; not-a-number
// meets any threshold. Returns whether the N-gram passes and, if it does, sets `values` to those of all measures.
template <typename Count>
bool evaluate(const EvaluationTablesOf<Count>& tables, const std::vector<MeasureOf<Count>>& measures,
              std::vector<double>& values);

}  // namespace colx
