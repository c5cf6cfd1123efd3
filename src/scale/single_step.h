#pragma once

// Tasks by themselves, for an engine that decides when each is done and on which machine.

#include <cstddef>
#include <string>
#include <string_view>

#include "scale/engine/plan.h"
#include "scale/engine/task_pool.h"

namespace colx::scale {

// Does the tasks `first`, `first` + `distance` and so on of a step, one after another, in a folder that holds a plan
// and where the steps before are over. A task that is done already is not done again; of one at which another process
// is, here or on another machine, the end is awaited. One whose files have gone and are needed again is done again.
// Behind "number" says what ngrex says while it reads the datafiles. Throws fatal_error for what ends ngrex as well,
// input_error without a plan, and damaged_file. If the others are to keep going when a task fails, failures are thrown
// when all have been tried.
void do_step(const WorkFolder& folder, std::string_view name, std::size_t first, std::size_t distance,
             OnFailure on_failure = OnFailure::stop);

// Removes the files that no step needs any more, as far as the steps are over. Others may be at tasks of the folder
// meanwhile. Throws input_error without a plan, damaged_file for one that is damaged, and output_error.
void drop_spent(const WorkFolder& folder);

// The plan of a folder. Throws input_error when there is none, and damaged_file.
Plan load_plan(const WorkFolder& folder);

}  // namespace colx::scale
