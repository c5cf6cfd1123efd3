#pragma once

// Fisher's exact test of a two by two table, one-sided.

#include <cstdint>

namespace colx::table {

// -log10 of the probability of `both` or more common occurrences, given the marginals `first` and `second` and the
// total. From 0 upwards; never infinite, whatever the table. Requires both <= first, second <= total, and first +
// second - both <= total.
double fisher_association(std::uint64_t both, std::uint64_t first, std::uint64_t second, std::uint64_t total);

// The same without the distribution functions of the library, for tables that are beyond their range: the logarithm of
// one probability by saddle-point expansion, and its neighbours by their ratios.
double fisher_by_expansion(std::uint64_t both, std::uint64_t first, std::uint64_t second, std::uint64_t total);

}  // namespace colx::table
