#pragma once

// All tasks of a run, stage by stage.

#include <cstddef>
#include <functional>

#include "scale/engine/plan.h"
#include "scale/engine/task_pool.h"

namespace colx::scale {

// Does whatever is not done yet, up to the counts of all patterns, and says what ngrex says while it reads the
// datafiles; then calls `use`, which reads what has been counted. What turns out to be damaged is made again. With
// `drop`, files go as soon as no later step needs them. Throws fatal_error for what ends ngrex as well.
void count_all(const WorkFolder& folder, const Plan& plan, std::size_t jobs, OnFailure on_failure, bool drop,
               const std::function<void()>& use);

// Makes sure that nothing is left to be done. Throws input_error, and damaged_file for what is missing.
void check_counted(const WorkFolder& folder, const Plan& plan);

}  // namespace colx::scale
