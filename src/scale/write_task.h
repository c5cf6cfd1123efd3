#pragma once

// Writing: the output files, from what has been counted.

#include "scale/plan.h"

namespace colx::scale {

// Writes the files that the settings name, in the order in which ngrex writes them. Sieves, thresholds and precision
// are those of the settings. Throws fatal_error when a file cannot be written.
void write_files(const WorkFolder& folder, const Plan& plan);

}  // namespace colx::scale
