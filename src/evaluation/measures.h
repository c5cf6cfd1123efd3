#pragma once

// The association measures. Each is a pure function of the contingency tables of one N-gram. Degenerate tables give
// infinities and not-a-numbers, which are results like any other. Logarithms are to base 10 throughout.
//
// F are the frequencies, O the observed and E the expected cells, N = F[0]; see evaluation.h for the numbering of
// cells. Counts are converted to double, in which all but Pearson's coefficient is worked out; beyond 2^53 that rounds
// them.

#include <cstdint>

#include "evaluation/evaluation.h"

namespace colx {

// The logarithm to base 10, guarded: an argument closer to 0 than the double epsilon gives the smallest normal double,
// so that a zero ratio contributes next to nothing instead of minus infinity.
double _log10(double x);

namespace eval {

// Sum over all cells of (O - E)^2 / E (Pearson 1900), for any number of members.
template <typename Count>
double chi_square_test(const EvaluationTablesOf<Count>& tables);

// Twice the sum over all cells of O log(O / E) (Dunning 1993, here to base 10), for any number of members. Cells with
// an O of 0 contribute 0.
template <typename Count>
double log_likelihood_ratio(const EvaluationTablesOf<Count>& tables);

// log2 of (F[3] / N) / ((F[2] / N) (F[1] / N)) (Church and Hanks 1990), for pairs.
template <typename Count>
double mutual_information(const EvaluationTablesOf<Count>& tables);

// (O[3] O[0] - O[2] O[1]) / sqrt((O[3] + O[2]) (O[3] + O[1]) (O[0] + O[2]) (O[0] + O[1])) for pairs. With
// counts of 32 bits numerator and denominator are each taken modulo 2^32, so that a negative association gives a large
// positive number; with counts of 64 bits they are what they are.
template <typename Count>
double pearsons_coefficient(const EvaluationTablesOf<Count>& tables);
template <>
double pearsons_coefficient(const EvaluationTables& tables);
template <>
double pearsons_coefficient(const EvaluationTablesOf<std::uint64_t>& tables);

// (F[3] - E[3]) / sqrt(F[3] (1 - F[3] / N)) (Church et al. 1991), for pairs.
template <typename Count>
double t_test(const EvaluationTablesOf<Count>& tables);

// (F[3] - E[3]) / sqrt(E[3] (1 - E[3] / N)) (Berry-Rogghe 1973), for pairs.
template <typename Count>
double z_score(const EvaluationTablesOf<Count>& tables);

}  // namespace eval

}  // namespace colx
