#include "rows/contingency.h"

#include <boost/multiprecision/cpp_int.hpp>
#include <cmath>

namespace colx::table {

namespace {

// (O n^(N-1) - product of the marginals) / n^(N-1) by whole numbers, of up to 7 times 53 bits.
long double _exact_excess(const Contingency& table, std::size_t cell) {
  using Whole = boost::multiprecision::int512_t;
  Whole observed = table.cells[cell];
  Whole mean = 1;
  Whole scale = 1;
  for (std::size_t k = 0; k < table.n; ++k) {
    const bool present = (cell >> (table.n - 1 - k) & 1) != 0;
    mean *= present ? table.marginals[k] : table.total - table.marginals[k];
    if (k != 0) scale *= table.total;
  }
  observed *= scale;
  const Whole difference = observed - mean;
  return static_cast<long double>(difference) / static_cast<long double>(scale);
}

}  // namespace

Contingency::Contingency(std::size_t words, std::span<const std::uint64_t> observed)
    : n(words), cells(observed.first(std::size_t{1} << words)), frequency(cells.back()) {
  for (std::size_t i = 0; i < cells.size(); ++i) {
    total += cells[i];
    for (std::size_t k = 0; k < n; ++k)
      if ((i >> (n - 1 - k) & 1) != 0) marginals[k] += cells[i];
  }
}

long double Contingency::expected_frequency() const {
  return expected(cells.size() - 1);
}

long double Contingency::expected(std::size_t cell) const {
  const auto all = static_cast<long double>(total);
  long double result = 1;
  for (std::size_t k = 0; k < n; ++k) {
    const bool present = (cell >> (n - 1 - k) & 1) != 0;
    const auto marginal = static_cast<long double>(present ? marginals[k] : total - marginals[k]);
    result = k == 0 ? marginal : result * marginal / all;
  }
  return result;
}

long double Contingency::excess(std::size_t cell) const {
  const std::uint64_t observed = cells[cell];
  if (n == 2 && total != 0) {
    // f n - f1 f2 is the same for all cells but for its sign, of numbers below 2^54 each.
    __extension__ using Wide = __int128;
    const Wide difference = static_cast<Wide>(frequency) * static_cast<Wide>(total) -
                            static_cast<Wide>(marginals[0]) * static_cast<Wide>(marginals[1]);
    const long double result = static_cast<long double>(difference) / static_cast<long double>(total);
    return cell == 0 || cell == 3 ? result : -result;
  }
  const long double mean = expected(cell);
  const long double difference = static_cast<long double>(observed) - mean;
  // What is left of 64 bits is enough, or else whole numbers are.
  constexpr long double close = 1.0L / (1 << 20);
  return std::fabs(difference) > close * mean ? difference : _exact_excess(*this, cell);
}

}  // namespace colx::table
