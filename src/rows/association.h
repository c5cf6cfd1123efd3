#pragma once

// Textbook measures of association, computed from the observed cells. The formulas, their sources and the cases in
// which a value is not a number are listed in docs/measures.md.

#include <span>
#include <string_view>

#include "rows/contingency.h"

namespace colx::table {

// One measure as users know it.
struct Association {
  std::string_view name;
  bool is_for_pairs;   // alone; others are defined for any N
  bool gets_the_sign;  // a statistic that grows with every deviation from independence is negative where f < E
  long double (*of)(const Contingency& table);  // of a table that is not empty; for a statistic without the sign
};

// All measures, in the order in which they are documented.
std::span<const Association> associations();

// The measure of that name, which is compared exactly; null when there is none.
const Association* find_association(std::string_view name);

// Whether the measure exists for N-grams of n words.
bool is_defined(const Association& measure, std::size_t n);

// Whether statistics get the sign of f - E, or are as they were published.
enum class Sign { of_excess, none };

// The value for one table, possibly infinite or not a number. Requires is_defined(measure, table.n).
double associate(const Association& measure, const Contingency& table, Sign sign = Sign::of_excess);

}  // namespace colx::table
