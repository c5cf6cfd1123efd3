#include "scale/pipeline.h"

#include <vector>

#include "companion/errors.h"
#include "scale/engine/progress.h"
#include "scale/shards/number_task.h"
#include "scale/steps.h"
#include "spill/damaged_file.h"

namespace colx::scale {

namespace {

// After so many damaged files the disk, or the program, is to blame.
constexpr int most_attempts = 64;

// Does a step; without jobs, looks whether it is done.
void _do_step(std::string_view name, const WorkFolder& folder, const Plan& plan, std::size_t jobs,
              OnFailure on_failure = OnFailure::stop) {
  const Step step = step_of(name, folder, plan);
  std::vector<Task> tasks;
  for (std::size_t k = 0; k < step.tasks; ++k)
    tasks.push_back(step.task(k));
  if (jobs > 0) {
    Progress::begin_stage(name, tasks.size());
    do_tasks(folder, tasks, jobs, on_failure);
  } else if (!all_done(folder, tasks)) {
    throw input_error("the counts in the folder " + folder.path() + " are not complete: ngrex-scale run has not ended");
  }
}

}  // namespace

void count_all(const WorkFolder& folder, const Plan& plan, std::size_t jobs, OnFailure on_failure, bool drop,
               const std::function<void()>& use) {
  std::size_t told = 0;
  for (int attempt = 1;; ++attempt) {
    try {
      for (const std::string_view name : step_names) {
        _do_step(name, folder, plan, jobs, on_failure);
        if (name == number_name) tell_messages(folder, folder.result(number_name), told);
        if (drop) folder.drop_spent(name);
      }
      use();
      return;
    } catch (const damaged_file& error) {
      if (attempt == most_attempts || !folder.forget_maker(error.path())) throw;
    }
  }
}

void check_counted(const WorkFolder& folder, const Plan& plan) {
  for (const std::string_view name : step_names)
    _do_step(name, folder, plan, 0);
}

}  // namespace colx::scale
