#include "scale/single_step.h"

#include <optional>

#include <fmt/format.h>

#include "base/errors.h"
#include "companion/errors.h"
#include "model/ngram.h"
#include "scale/engine/task_pool.h"
#include "scale/shards/number_task.h"
#include "scale/steps.h"
#include "scale/steps_over.h"

namespace colx::scale {

namespace {

// Says what ngrex says while it reads the datafiles.
void _tell(const WorkFolder& folder) {
  const Manifest manifest = folder.result(number_name);
  std::size_t told = 0;
  tell_messages(folder, manifest, told);
  const std::string failure = Numbering::from(manifest).failure;
  if (!failure.empty()) throw fatal_error(failure);
}

}  // namespace

void do_step(const WorkFolder& folder, std::string_view name, std::size_t first, std::size_t distance,
             OnFailure on_failure) {
  const Plan plan = load_plan(folder);
  const FolderLock lock(folder, FolderLock::Use::shared);
  plan.apply_options();
  NGram::init();
  const Step step = step_of(name, folder, plan);
  StepsOver over(folder, plan);
  Failures failures(on_failure);
  for (std::size_t k = first; k < step.tasks; k += distance) {
    failures.watch([&] {
      // What a task depends on may be different when another process has been at it.
      const TaskLock of_task(folder, step.task(k).name);
      if (over.is_missed(step.task(k).name)) folder.forget(step.task(k).name);
      do_tasks(folder, {step.task(k)}, 1);
      if (name == number_name) _tell(folder);
    });
  }
  failures.tell();
}

void drop_spent(const WorkFolder& folder) {
  const Plan plan = load_plan(folder);
  const FolderLock lock(folder, FolderLock::Use::shared);
  const TaskLock of_dropping(folder, "drop");
  plan.apply_options();
  NGram::init();
  StepsOver over(folder, plan);
  for (const std::string_view name : step_names) {
    if (!over.holds(name)) return;
    folder.drop_spent(name);
  }
}

Plan load_plan(const WorkFolder& folder) {
  std::optional<Plan> plan = Plan::load(folder);
  if (!plan) throw input_error(fmt::format("the folder {} holds no counts", folder.path()));
  return *std::move(plan);
}

}  // namespace colx::scale
