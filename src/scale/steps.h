#pragma once

// The steps of the work. The tasks of a step can be done at the same time, in any order and on any machine, once the
// steps before it are over.

#include <cstddef>
#include <functional>
#include <string_view>

#include "scale/engine/plan.h"
#include "scale/engine/task_pool.h"

namespace colx::scale {

// In their order. What is left then is to write the files.
inline constexpr std::string_view step_names[] = {"scan",  "number", "map",     "reduce", "arrange",
                                                  "order", "count",  "collect", "merge",  "format"};

// The last steps, which have no tasks unless contexts are collected.
inline constexpr std::size_t steps_of_contexts = 3;

// The tasks of a step. They refer to the folder and the plan.
struct Step {
  std::size_t tasks = 0;
  std::function<Task(std::size_t)> task;  // by number
};

// The step of this name. Throws damaged_file when something is missing that the steps before leave, and fatal_error
// when they have found what ends ngrex as well.
Step step_of(std::string_view name, const WorkFolder& folder, const Plan& plan);

}  // namespace colx::scale
