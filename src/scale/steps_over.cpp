#include "scale/steps_over.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "base/errors.h"
#include "scale/steps.h"
#include "scale/work/spent_files.h"
#include "spill/damaged_file.h"

namespace colx::scale {

bool StepsOver::holds(std::string_view step) {
  const auto known = _known.find(step);
  if (known != _known.end()) return known->second;
  const bool is_over = _find_out(step);
  _known.emplace(step, is_over);
  return is_over;
}

bool StepsOver::_find_out(std::string_view name) try {
  const Step step = step_of(name, _folder, _plan);
  for (std::size_t k = 0; k < step.tasks; ++k) {
    const Task task = step.task(k);
    if (!all_done(_folder, {task}) || is_missed(task.name)) return false;
  }
  return true;
} catch (const damaged_file&) {  // also where a step before is not over
  return false;
} catch (const fatal_error&) {  // which ends all work
  return false;
}

bool StepsOver::is_missed(const std::string& task) {
  const std::vector<std::string_view> readers = _folder.readers_of_missing(task);
  if (readers.empty()) return false;
  // Steps between the one that makes a file and the last one that reads it may read it, too.
  const auto* const maker = std::find(std::begin(step_names), std::end(step_names), step_of_task(task));
  const auto* const last =
      std::find_first_of(std::rbegin(step_names), std::rend(step_names), readers.begin(), readers.end()).base();
  return !std::all_of(maker + 1, last, [&](std::string_view step) { return holds(step); });
}

}  // namespace colx::scale
