#pragma once

// How much memory a sort may take.

#include <cstddef>

namespace colx::table {

// A quarter of the memory of the machine, in bytes.
std::size_t usual_memory_of_sorts();

}  // namespace colx::table
