#pragma once

// Sizes of memory, as options give them and as the machine has them.

#include <cstddef>

#include "companion/command_line.h"

namespace colx {

// The memory of the machine in bytes; 4 GiB where that is unknown.
std::size_t memory_of_machine();

// The value of an option as bytes: a whole number from 1 with K, M, G or T behind it for the powers of 1024. Throws
// usage_error.
std::size_t memory_size(const GivenOption& given);

}  // namespace colx
