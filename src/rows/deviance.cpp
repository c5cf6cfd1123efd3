#include "rows/deviance.h"

#include <cmath>

namespace colx::table {

long double deviance(long double x, long double mean, long double difference) {
  if (x == 0) return mean;
  if (std::fabs(difference) >= 0.1L * (x + mean)) return x * std::log(x / mean) - difference;
  const long double v = difference / (x + mean);
  long double sum = difference * v;
  long double term = 2 * x * v;
  for (int j = 1;; ++j) {
    term *= v * v;
    const long double next = sum + term / static_cast<long double>(2 * j + 1);
    // The terms fall by v^2 < 1/100 each, so that one soon adds nothing.
    if (!(next > sum || next < sum)) return sum;
    sum = next;
  }
}

}  // namespace colx::table
