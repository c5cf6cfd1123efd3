#include "table/association.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

#include "table/deviance.h"
#include "table/fisher.h"

namespace colx::table {

namespace {

constexpr long double _not_a_number = std::numeric_limits<long double>::quiet_NaN();

using Real = long double;

Real _number(std::uint64_t count) {
  return static_cast<Real>(count);
}

// The sums of observed and of expected cells are equal, so that those of the deviances are those of O ln(O / E).
Real _g2(const Contingency& table) {
  Real sum = 0;
  for (std::size_t i = 0; i < table.cells.size(); ++i)
    if (const Real expected = table.expected(i); expected > 0) sum += deviance(_number(table.cells[i]), expected);
  return 2 * sum;
}

// A cell that cannot occur, because a word is never absent or never present, has no part in the sum.
Real _x2(const Contingency& table) {
  Real sum = 0;
  for (std::size_t i = 0; i < table.cells.size(); ++i) {
    const Real expected = table.expected(i);
    const Real difference = _number(table.cells[i]) - expected;
    if (expected > 0) sum += difference * difference / expected;
  }
  return sum;
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
      return std::log2(f / table.expected_frequency());
    case Association::mi3:
      return std::log2(f * f * f / table.expected_frequency());
    case Association::log_dice:
      return 14 + std::log2(_dice(table));
    case Association::dice:
      return _dice(table);
    case Association::t:
      return (f - table.expected_frequency()) / std::sqrt(f);
    case Association::z:
      return (f - table.expected_frequency()) / std::sqrt(table.expected_frequency());
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
