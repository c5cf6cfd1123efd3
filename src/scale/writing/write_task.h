#pragma once

// Writing: the output files, from what has been counted.

#include <cstddef>

#include "scale/engine/plan.h"

namespace colx::scale {

// How files are written, beside what the settings say.
struct Writing {
  std::size_t jobs = 1;  // processes at a time for the output datafile
  bool exact = false;    // whether counts are written as they are, instead of as ngrex would hold them
};

// Writes the files that the settings name, in the order in which ngrex writes them. Sieves, thresholds and precision
// are those of the settings. Unless the counts are written as they are, says at the end when some count is beyond what
// ngrex holds. Throws fatal_error when a file cannot be written, and damaged_file.
void write_files(const WorkFolder& folder, const Plan& plan, const Writing& writing);

}  // namespace colx::scale
