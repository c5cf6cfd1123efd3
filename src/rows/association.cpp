#include "rows/association.h"

#include <algorithm>
#include <array>
#include <limits>

#include "rows/formulas.h"

namespace colx::table {

namespace {

constexpr bool pairs = true;
constexpr bool any = false;
constexpr bool with_sign = true;

constexpr auto _associations = std::to_array<Association>({
    {"G2", any, with_sign, formula::g2},
    {"X2", any, with_sign, formula::x2},
    {"simple_ll", any, with_sign, formula::simple_ll},
    {"p_G2", pairs, false, formula::p_g2},
    {"p_X2", pairs, false, formula::p_x2},
    {"Fisher", pairs, false, formula::fisher},
    {"expected", any, false, formula::expected},
    {"t", any, false, formula::t},
    {"z", any, false, formula::z},
    {"poisson", any, false, formula::poisson},
    {"MI", any, false, formula::mi},
    {"MI3", any, false, formula::mi3},
    {"local_mi", any, false, formula::local_mi},
    {"npmi", any, false, formula::npmi},
    {"Dice", any, false, formula::dice},
    {"logDice", any, false, formula::log_dice},
    {"jaccard", any, false, formula::jaccard},
    {"min_sensitivity", any, false, formula::min_sensitivity},
    {"phi", pairs, false, formula::phi},
    {"odds_ratio", pairs, false, formula::odds_ratio},
    {"log_ratio", pairs, false, formula::log_ratio},
    {"delta_p12", pairs, false, formula::delta_p12},
    {"delta_p21", pairs, false, formula::delta_p21},
});

}  // namespace

std::span<const Association> associations() {
  return _associations;
}

const Association* find_association(std::string_view name) {
  const auto* const found = std::find_if(_associations.begin(), _associations.end(),
                                         [&](const Association& known) { return known.name == name; });
  return found == _associations.end() ? nullptr : found;
}

bool is_defined(const Association& measure, std::size_t n) {
  return n == 2 || !measure.is_for_pairs;
}

double associate(const Association& measure, const Contingency& table, Sign sign) {
  if (table.total == 0) return std::numeric_limits<double>::quiet_NaN();
  const auto value = static_cast<double>(measure.of(table));
  return measure.gets_the_sign && sign == Sign::of_excess && table.excess() < 0 ? -value : value;
}

}  // namespace colx::table
