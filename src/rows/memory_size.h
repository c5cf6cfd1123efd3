#pragma once

// How much memory a sort may take.

#include <cstddef>

#include "companion/command_line.h"

namespace colx::table {

// A quarter of the memory of the machine, in bytes.
std::size_t usual_memory_of_sorts();

// The value of an option as bytes: a whole number from 1 with K, M, G or T behind it for the powers of 1024. Throws
// usage_error.
std::size_t memory_size(const GivenOption& given);

}  // namespace colx::table
