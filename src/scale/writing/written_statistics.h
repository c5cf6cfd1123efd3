#pragma once

// The two statistics files, from what has been counted: with the 32-bit numbers of ngrex, which begin again at 2^32, or
// with the true ones in 64 bits.

#include <cstdint>
#include <ostream>

#include "scale/writing/counted.h"

namespace colx::scale {

// Checks that ngrex could hold the different patterns of every type: throws fatal_error when it could not, and
// damaged_file.
void check_patterns(const Counted& counted);

// Writes what the option -s asks for. Throws damaged_file.
template <typename Count>
void write_statistics(std::ostream& out, const Counted& counted);

// Writes what the option -fs asks for. Throws damaged_file.
template <typename Count>
void write_filter_statistics(std::ostream& out, const Counted& counted);

extern template void write_statistics<std::uint32_t>(std::ostream&, const Counted&);
extern template void write_statistics<std::uint64_t>(std::ostream&, const Counted&);
extern template void write_filter_statistics<std::uint32_t>(std::ostream&, const Counted&);
extern template void write_filter_statistics<std::uint64_t>(std::ostream&, const Counted&);

}  // namespace colx::scale
