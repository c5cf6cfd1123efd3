#include "rows/counterpart.h"

#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "rows/contingency.h"

namespace colx::table {

double keyness(std::uint64_t frequency, std::uint64_t total, const Counterpart& other, Sign sign) {
  if (total == 0 || other.total == 0) return std::numeric_limits<double>::quiet_NaN();
  // The first word stands for this file, the second for the N-gram.
  const std::array<std::uint64_t, 4> cells = {other.total - other.frequency, other.frequency, total - frequency,
                                              frequency};
  return associate(*find_association("G2"), Contingency(2, cells), sign);
}

double keyness_log_ratio(std::uint64_t frequency, std::uint64_t total, const Counterpart& other) {
  if (total == 0 || other.total == 0) return std::numeric_limits<double>::quiet_NaN();
  // log2(a / b) of whole numbers, so that it has all digits near 0 too; both are below 2^106.
  __extension__ using Wide = __int128;
  const Wide a = static_cast<Wide>(frequency) * static_cast<Wide>(other.total);
  const Wide b = static_cast<Wide>(other.frequency) * static_cast<Wide>(total);
  if (a / 2 < b && b / 2 < a)
    return static_cast<double>(std::log1p(static_cast<long double>(a - b) / static_cast<long double>(b)) /
                               std::numbers::ln2_v<long double>);
  // Infinities of both signs make not-a-number.
  return static_cast<double>(std::log2(static_cast<long double>(a)) - std::log2(static_cast<long double>(b)));
}

}  // namespace colx::table
