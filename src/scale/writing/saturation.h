#pragma once

// Counts beyond 32 bits, which intermediate files hold and ngrex does not.

#include <algorithm>
#include <cstdint>
#include <type_traits>

#include "base/limits.h"

namespace colx::scale {

// The frequency that ngrex reads of what occurs so often. A record of it carries what its 24 bits have counted over,
// again and again, until the sum would pass the limit; so up to there the sum with what is in the counter is the number
// itself, and beyond it is the limit.
inline std::uint32_t saturated(std::uint64_t number) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(number, limits::frequency));
}

// A frequency as it is written: that of ngrex, or, with 64 bits, the true one.
template <typename Count>
Count frequency_as(std::uint64_t number) {
  if constexpr (std::is_same_v<Count, std::uint32_t>) {
    return saturated(number);
  } else {
    return number;
  }
}

// A number of the statistics: ngrex begins again at 2^32.
template <typename Count>
Count number_as(std::uint64_t number) {
  return static_cast<Count>(number);
}

}  // namespace colx::scale
