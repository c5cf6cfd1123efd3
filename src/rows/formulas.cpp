#include "rows/formulas.h"

#include <algorithm>
#include <boost/math/distributions/chi_squared.hpp>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

#include "rows/deviance.h"
#include "rows/fisher.h"

namespace colx::table::formula {

namespace {

Real _number(std::uint64_t count) {
  return static_cast<Real>(count);
}

// Upper tail of the chi-square distribution with one degree of freedom; 0 when it is below the range of a double.
Real _tail(Real statistic) {
  const boost::math::chi_squared distribution(1);
  return boost::math::cdf(boost::math::complement(distribution, static_cast<double>(statistic)));
}

}  // namespace

// The sum of O ln(O / E) + E - O, which is that of O ln(O / E), because all O and all E have the same sum. Each term is
// positive and computed without cancellation. A cell that cannot occur, because a word is never absent or never
// present, has no part in it.
Real g2(const Contingency& table) {
  Real sum = 0;
  for (std::size_t i = 0; i < table.cells.size(); ++i)
    if (const Real mean = table.expected(i); mean > 0) sum += deviance(_number(table.cells[i]), mean, table.excess(i));
  return 2 * sum;
}

// Likewise without cells that cannot occur.
Real x2(const Contingency& table) {
  Real sum = 0;
  for (std::size_t i = 0; i < table.cells.size(); ++i) {
    const Real difference = table.excess(i);
    if (const Real mean = table.expected(i); mean > 0) sum += difference * difference / mean;
  }
  return sum;
}

Real simple_ll(const Contingency& table) {
  const Real mean = expected(table);
  return mean > 0 ? 2 * deviance(_number(table.frequency), mean, table.excess()) : 0;
}

Real p_g2(const Contingency& table) {
  return _tail(g2(table));
}

Real p_x2(const Contingency& table) {
  return _tail(x2(table));
}

Real fisher(const Contingency& table) {
  return fisher_association(table.frequency, table.marginals[0], table.marginals[1], table.total);
}

Real expected(const Contingency& table) {
  return table.expected_frequency();
}

Real t(const Contingency& table) {
  return table.excess() / std::sqrt(_number(table.frequency));
}

Real z(const Contingency& table) {
  return table.excess() / std::sqrt(expected(table));
}

Real poisson(const Contingency& table) {
  if (table.frequency == 0) return 0;
  const Real f = _number(table.frequency);
  return f * (mi(table) * std::numbers::ln2_v<Real> - 1);
}

// Near 0 from the difference of f and E.
Real mi(const Contingency& table) {
  const Real mean = expected(table);
  const Real relative_excess = table.excess() / mean;
  if (std::fabs(relative_excess) < 0.5L) return std::log1p(relative_excess) / std::numbers::ln2_v<Real>;
  return std::log2(_number(table.frequency) / mean);
}

Real mi3(const Contingency& table) {
  return mi(table) + 2 * std::log2(_number(table.frequency));
}

Real local_mi(const Contingency& table) {
  return table.frequency == 0 ? 0 : _number(table.frequency) * mi(table);
}

// -1 is the limit for words that never occur together.
Real npmi(const Contingency& table) {
  if (table.frequency == 0) return expected(table) > 0 ? -1 : std::numeric_limits<Real>::quiet_NaN();
  return mi(table) / (-_number(table.n - 1) * std::log2(_number(table.frequency) / _number(table.total)));
}

Real dice(const Contingency& table) {
  Real sum = 0;
  for (std::size_t k = 0; k < table.n; ++k)
    sum += _number(table.marginals[k]);
  return _number(table.n) * _number(table.frequency) / sum;
}

Real log_dice(const Contingency& table) {
  return 14 + std::log2(dice(table));
}

Real jaccard(const Contingency& table) {
  return _number(table.frequency) / _number(table.total - table.cells[0]);
}

Real min_sensitivity(const Contingency& table) {
  const std::uint64_t largest = *std::max_element(table.marginals.begin(), table.marginals.begin() + table.n);
  return _number(table.frequency) / _number(largest);
}

// The numerator is the excess times n.
Real phi(const Contingency& table) {
  Real result = table.excess();
  for (std::size_t k = 0; k < 2; ++k)
    result /=
        std::sqrt(_number(table.marginals[k]) * (_number(table.total - table.marginals[k]) / _number(table.total)));
  return result;
}

Real odds_ratio(const Contingency& table) {
  return _number(table.cells[3]) * _number(table.cells[0]) / (_number(table.cells[2]) * _number(table.cells[1]));
}

Real log_ratio(const Contingency& table) {
  const Real with = _number(table.frequency) / _number(table.marginals[0]);
  const Real without = _number(table.cells[1]) / _number(table.total - table.marginals[0]);
  return std::log2(with / without);
}

namespace {

// How much more frequent one word is where the other is than where it is not, that other one being word k.
Real _delta_p(const Contingency& table, std::size_t k) {
  const Real present = _number(table.marginals[k]);
  const Real absent = _number(table.total - table.marginals[k]);
  return table.excess() / present * (_number(table.total) / absent);
}

}  // namespace

Real delta_p12(const Contingency& table) {
  return _delta_p(table, 0);
}

Real delta_p21(const Contingency& table) {
  return _delta_p(table, 1);
}

}  // namespace colx::table::formula
