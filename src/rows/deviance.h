#pragma once

// How far a count is from what was expected.

namespace colx::table {

// x ln(x / mean) + mean - x without cancellation when x is near the mean, see C. Loader, Fast and accurate computation
// of binomial probabilities (2000). From 0 upwards; the mean itself when x is 0. `difference` is x - mean, which the
// caller may know better than it can be computed from the two. Requires mean > 0.
long double deviance(long double x, long double mean, long double difference);

}  // namespace colx::table
