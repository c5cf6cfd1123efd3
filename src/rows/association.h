#pragma once

// Textbook measures of association, computed from the observed cells. The formulas, their sources and the cases in
// which a value is not a number are listed in docs/measures.md.

#include <array>
#include <cstddef>
#include <optional>
#include <string_view>

#include "rows/contingency.h"

namespace colx::table {

enum class Association { g2, x2, mi, mi3, log_dice, dice, t, z, fisher, odds_ratio };

inline constexpr std::array<std::string_view, 10> association_names = {"G2",   "X2", "MI", "MI3",    "logDice",
                                                                       "Dice", "t",  "z",  "Fisher", "odds_ratio"};

// The measure of that name, which is compared exactly.
std::optional<Association> find_association(std::string_view name);

// Whether the measure exists for N-grams of n words; Fisher's test and the odds ratio do for pairs alone.
bool is_defined(Association measure, std::size_t n);

// The value for one table, possibly infinite or not a number. Requires is_defined(measure, table.n).
double associate(Association measure, const Contingency& table);

}  // namespace colx::table
