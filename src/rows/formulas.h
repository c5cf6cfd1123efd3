#pragma once

// The formulas of the measures of association, one function for each, as docs/measures.md lists them. f is the
// frequency of the N-gram, f1 and f2 those of its words, n the total, E the expected frequency, O the observed cells.
//
// Every table has a total above 0. Values may be infinite or not a number. Those of pairs require n = 2 words.

#include "rows/contingency.h"

namespace colx::table::formula {

using Real = long double;

// Tests of independence, without a sign.
Real g2(const Contingency& table);         // 2 sum of O ln(O / E)
Real x2(const Contingency& table);         // sum of (O - E)^2 / E
Real simple_ll(const Contingency& table);  // 2 (f ln(f / E) - (f - E))
Real p_g2(const Contingency& table);       // of pairs: P(chi-square of one degree of freedom >= G2)
Real p_x2(const Contingency& table);       // of pairs: the same of X2
Real fisher(const Contingency& table);     // of pairs: -log10 P(F >= f) with given marginals

// Deviations of f from E.
Real expected(const Contingency& table);  // E
Real t(const Contingency& table);         // (f - E) / sqrt(f)
Real z(const Contingency& table);         // (f - E) / sqrt(E)
Real poisson(const Contingency& table);   // f (ln f - ln E - 1)

// Information.
Real mi(const Contingency& table);        // log2(f / E)
Real mi3(const Contingency& table);       // log2(f^3 / E)
Real local_mi(const Contingency& table);  // f log2(f / E)
Real npmi(const Contingency& table);      // MI / (-(N - 1) log2(f / n)), between -1 and 1 for pairs

// Overlap of the words.
Real dice(const Contingency& table);             // N f / sum of the marginals
Real log_dice(const Contingency& table);         // 14 + log2(Dice)
Real jaccard(const Contingency& table);          // f / (n - O[0])
Real min_sensitivity(const Contingency& table);  // least of f / f1, f / f2, ...

// Strength of the dependence, of pairs.
Real phi(const Contingency& table);         // (O[3] O[0] - O[2] O[1]) / sqrt(f1 f2 (n - f1) (n - f2))
Real odds_ratio(const Contingency& table);  // O[3] O[0] / (O[2] O[1])
Real log_ratio(const Contingency& table);   // log2 of (f / f1) / (O[1] / (n - f1))
Real delta_p12(const Contingency& table);   // f / f1 - O[1] / (n - f1)
Real delta_p21(const Contingency& table);   // f / f2 - O[2] / (n - f2)

}  // namespace colx::table::formula
