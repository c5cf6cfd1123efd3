#include "table/deviance.h"

#include <cmath>

namespace colx::table {

long double deviance(long double x, long double mean) {
  if (x == 0) return mean;
  if (std::fabs(x - mean) >= 0.1L * (x + mean)) return x * std::log(x / mean) + mean - x;
  const long double v = (x - mean) / (x + mean);
  long double sum = (x - mean) * v;
  long double term = 2 * x * v;
  for (int j = 1;; ++j) {
    term *= v * v;
    const long double next = sum + term / (2 * j + 1);
    if (next == sum) return sum;
    sum = next;
  }
}

}  // namespace colx::table
