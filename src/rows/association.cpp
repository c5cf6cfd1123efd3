#include "rows/association.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numbers>

#include "rows/deviance.h"
#include "rows/fisher.h"

namespace colx::table {

namespace {

using Real = long double;

constexpr Real _not_a_number = std::numeric_limits<Real>::quiet_NaN();

Real _number(std::uint64_t count) {
  return static_cast<Real>(count);
}

// What a cell has above its expected count. In a table of two words that is the same for all cells but for the sign.
Real _difference(const Contingency& table, std::size_t cell, Real expected) {
  if (table.n != 2) return _number(table.cells[cell]) - expected;
  return cell == 0 || cell == 3 ? table.excess() : -table.excess();
}

// The sum of O ln(O / E) + E - O, which is that of O ln(O / E), because all O and all E have the same sum. Each term is
// positive and computed without cancellation. A cell that cannot occur, because a word is never absent or never
// present, has no part in it.
Real _g2(const Contingency& table) {
  Real sum = 0;
  for (std::size_t i = 0; i < table.cells.size(); ++i)
    if (const Real expected = table.expected(i); expected > 0)
      sum += deviance(_number(table.cells[i]), expected, _difference(table, i, expected));
  return 2 * sum;
}

// Likewise without cells that cannot occur.
Real _x2(const Contingency& table) {
  Real sum = 0;
  for (std::size_t i = 0; i < table.cells.size(); ++i) {
    const Real expected = table.expected(i);
    const Real difference = _difference(table, i, expected);
    if (expected > 0) sum += difference * difference / expected;
  }
  return sum;
}

// log2(f / E), near 0 from the difference of both.
Real _mi(const Contingency& table) {
  const Real expected = table.expected_frequency();
  const Real relative_excess = table.excess() / expected;
  if (std::fabs(relative_excess) < 0.5L) return std::log1p(relative_excess) / std::numbers::ln2_v<Real>;
  return std::log2(_number(table.frequency) / expected);
}

Real _dice(const Contingency& table) {
  Real sum = 0;
  for (std::size_t k = 0; k < table.n; ++k)
    sum += _number(table.marginals[k]);
  return _number(table.n) * _number(table.frequency) / sum;
}

Real _odds_ratio(const Contingency& table) {
  return _number(table.cells[3]) * _number(table.cells[0]) / (_number(table.cells[2]) * _number(table.cells[1]));
}

Real _associate(Association measure, const Contingency& table) {
  if (table.total == 0) return _not_a_number;
  const Real f = _number(table.frequency);
  switch (measure) {
    case Association::g2:
      return _g2(table);
    case Association::x2:
      return _x2(table);
    case Association::mi:
      return _mi(table);
    case Association::mi3:
      return _mi(table) + 2 * std::log2(f);
    case Association::log_dice:
      return 14 + std::log2(_dice(table));
    case Association::dice:
      return _dice(table);
    case Association::t:
      return table.excess() / std::sqrt(f);
    case Association::z:
      return table.excess() / std::sqrt(table.expected_frequency());
    case Association::fisher:
      return fisher_association(table.frequency, table.marginals[0], table.marginals[1], table.total);
    case Association::odds_ratio:
      return _odds_ratio(table);
  }
  return _not_a_number;
}

}  // namespace

std::optional<Association> find_association(std::string_view name) {
  const auto* const found = std::find(association_names.begin(), association_names.end(), name);
  if (found == association_names.end()) return std::nullopt;
  return static_cast<Association>(found - association_names.begin());
}

bool is_defined(Association measure, std::size_t n) {
  return n == 2 || (measure != Association::fisher && measure != Association::odds_ratio);
}

double associate(Association measure, const Contingency& table) {
  return static_cast<double>(_associate(measure, table));
}

}  // namespace colx::table
