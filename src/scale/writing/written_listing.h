#pragma once

// The output datafile, from what has been counted: with the 32-bit numbers of ngrex, or with the true ones in 64 bits.

#include <cstddef>
#include <cstdint>

#include "scale/writing/counted.h"
#include "scale/writing/parts_file.h"

namespace colx::scale {

// The file in the parts in which the listing was put in order and one for what follows them, for so many processes at
// the most. Holds the vocabulary of the corpus; what has been counted must outlive it. Its parts throw damaged_file.
template <typename Count>
PartsFile listing_file(const Counted& counted, std::size_t jobs);

extern template PartsFile listing_file<std::uint32_t>(const Counted&, std::size_t);
extern template PartsFile listing_file<std::uint64_t>(const Counted&, std::size_t);

}  // namespace colx::scale
