#pragma once

// Writing: the output files, from what has been counted.

#include <cstddef>

#include "scale/plan.h"

namespace colx::scale {

// Writes the files that the settings name, in the order in which ngrex writes them. Sieves, thresholds and precision
// are those of the settings. The output datafile is written by so many processes at a time. Says at the end when some
// count is beyond what ngrex holds. Throws fatal_error when a file cannot be written, and damaged_file.
void write_files(const WorkFolder& folder, const Plan& plan, std::size_t jobs);

}  // namespace colx::scale
