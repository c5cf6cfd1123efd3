#pragma once

// The decision which N-grams reach the output datafile: two sieves, then the thresholds of the measures.

#include <cstdint>
#include <optional>
#include <vector>

#include "evaluation/evaluation.h"

namespace colx {

// A measure with the least value that the settings ask of it.
struct Measure {
  double (*evaluate)(const EvaluationTables&);
  double threshold;
};

// The measures that exist for the N of the settings, in the order in which they are written: chi-square, log-likelihood
// ratio and, for N = 2, mutual information, Pearson's coefficient, t test and z score.
std::vector<Measure> measures();

// Tells whether an N-gram of this frequency is frequent enough to be evaluated.
bool passes_frequency_sieve(std::uint32_t frequency);

// Applies the sieve of expected frequencies and the thresholds, one met or all met as the settings ask; not-a-number
// meets any threshold. Returns the values of all measures for an N-gram that passes, nothing for one that does not.
std::optional<std::vector<double>> evaluate(const EvaluationTables& tables, const std::vector<Measure>& measures);

}  // namespace colx
