#pragma once

// All tasks of a run, stage by stage.

#include <cstddef>

#include "scale/plan.h"

namespace colx::scale {

// Does whatever is not done yet, up to the counts of all patterns, and says what ngrex says while it reads the
// datafiles. What turns out to be damaged is made again. Throws fatal_error for what ends ngrex as well, having said it
// if it was among the messages.
void count_all(const WorkFolder& folder, const Plan& plan, std::size_t jobs);

}  // namespace colx::scale
