#include "rows/fisher.h"

#include <algorithm>
#include <boost/math/distributions/hypergeometric.hpp>
#include <cmath>
#include <limits>
#include <numbers>

#include "rows/deviance.h"

namespace colx::table {

namespace {

using Real = long double;

// ln n! minus its Stirling approximation, see C. Loader, Fast and accurate computation of binomial probabilities
// (2000).
Real _stirling_error(Real n) {
  if (n <= 16) return std::lgamma(n + 1) - (n + 0.5L) * std::log(n) + n - 0.5L * std::log(2 * std::numbers::pi_v<Real>);
  const Real square = n * n;
  return (1 / 12.0L -
          (1 / 360.0L -
           (1 / 1260.0L - (1 / 1680.0L - (1 / 1188.0L - 691 / 360360.0L / square) / square) / square) / square) /
              square) /
         n;
}

// Logarithm of the binomial probability of x successes in n trials of probability p, q = 1 - p.
Real _log_binomial(Real x, Real n, Real p, Real q) {
  if (x == 0) return n == 0 ? 0 : n * (p < 0.5L ? std::log1p(-p) : std::log(q));
  if (x == n) return n * (q < 0.5L ? std::log1p(-q) : std::log(p));
  return _stirling_error(n) - _stirling_error(x) - _stirling_error(n - x) - deviance(x, n * p, x - n * p) -
         deviance(n - x, n * q, n - x - n * q) + 0.5L * std::log(n / (2 * std::numbers::pi_v<Real> * x * (n - x)));
}

// Whether the upper tail holds every possible table.
bool _is_certain(std::uint64_t both, std::uint64_t first, std::uint64_t second, std::uint64_t total) {
  return both == 0 || first + second == total + both;
}

}  // namespace

double fisher_by_expansion(std::uint64_t both, std::uint64_t first, std::uint64_t second, std::uint64_t total) {
  if (_is_certain(both, first, second, total)) return 0;
  const auto a = static_cast<Real>(first);
  const auto b = static_cast<Real>(second);
  const auto all = static_cast<Real>(total);
  const Real p = b / all;
  const Real q = (all - b) / all;
  const auto log_probability = [&](Real x) {
    return _log_binomial(x, a, p, q) + _log_binomial(b - x, all - a, p, q) - _log_binomial(b, all, p, q);
  };
  // P(x + 1) / P(x)
  const auto ratio = [&](Real x) { return (a - x) * (b - x) / ((x + 1) * (all - a - b + x + 1)); };
  constexpr Real small = std::numeric_limits<Real>::epsilon();
  const auto f = static_cast<Real>(both);
  if (f > a * b / all) {
    Real sum = 1;
    Real term = 1;
    for (Real x = f; term > small * sum; ++x) {
      term *= ratio(x);
      sum += term;
    }
    const Real log_tail = log_probability(f) + std::log(sum);
    if (log_tail < -std::numbers::ln2_v<Real>) return static_cast<double>(-log_tail / std::numbers::ln10_v<Real>);
  }
  // The tail is near 1; what it lacks is more exact.
  Real sum = 1;
  Real term = 1;
  const Real least = a + b > all ? a + b - all : 0;
  for (Real x = f - 1; x > least && term > small * sum; --x) {
    term /= ratio(x - 1);
    sum += term;
  }
  const Real lacking = std::exp(log_probability(f - 1)) * sum;
  return static_cast<double>(std::max<Real>(0, -std::log1p(-lacking) / std::numbers::ln10_v<Real>));
}

double fisher_association(std::uint64_t both, std::uint64_t first, std::uint64_t second, std::uint64_t total) {
  if (_is_certain(both, first, second, total)) return 0;
  // The library's distribution takes far longer for large totals, counts in 32 bits, and its probabilities end where
  // those of a double do.
  constexpr double least_trusted = 1e-290;
  constexpr std::uint64_t largest_quick_total = 1000;
  if (total <= largest_quick_total) {
    using boost::math::policies::domain_error;
    using boost::math::policies::evaluation_error;
    using boost::math::policies::ignore_error;
    using boost::math::policies::overflow_error;
    using boost::math::policies::underflow_error;
    using Quiet = boost::math::policies::policy<domain_error<ignore_error>, overflow_error<ignore_error>,
                                                underflow_error<ignore_error>, evaluation_error<ignore_error>>;
    const boost::math::hypergeometric_distribution<double, Quiet> distribution(
        static_cast<unsigned>(first), static_cast<unsigned>(second), static_cast<unsigned>(total));
    const auto below = static_cast<unsigned>(both - 1);
    const double tail = boost::math::cdf(boost::math::complement(distribution, below));
    if (tail > least_trusted && tail < 0.5) return -std::log10(tail);
    const double lacking = boost::math::cdf(distribution, below);
    if (lacking > least_trusted && lacking <= 0.5) return -std::log1p(-lacking) / std::numbers::ln10;
  }
  return fisher_by_expansion(both, first, second, total);
}

}  // namespace colx::table
