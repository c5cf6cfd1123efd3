#include "rows/contingency.h"

namespace colx::table {

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

long double Contingency::excess() const {
  if (n != 2 || total == 0) return static_cast<long double>(frequency) - expected_frequency();
  // f n - f1 f2, of numbers below 2^54 each
  __extension__ using Wide = __int128;
  const Wide difference = static_cast<Wide>(frequency) * static_cast<Wide>(total) -
                          static_cast<Wide>(marginals[0]) * static_cast<Wide>(marginals[1]);
  return static_cast<long double>(difference) / static_cast<long double>(total);
}

}  // namespace colx::table
