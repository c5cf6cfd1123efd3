#include "scale/steps_over.h"

#include <algorithm>
#include <iterator>
#include <vector>

#include "base/errors.h"
#include "scale/engine/spent_files.h"
#include "spill/damaged_file.h"

namespace colx::scale {

bool StepsOver::holds(std::string_view step) {
  const auto known = _known.find(step);
  if (known != _known.end()) return known->second;
  const std::optional<Step>& done = _done_step(step);
  bool is_over = done.has_value();
  for (std::size_t k = 0; is_over && k < done->tasks; ++k)
    is_over = !is_missed(done->task(k).name);
  _known.emplace(step, is_over);
  return is_over;
}

const std::optional<Step>& StepsOver::_done_step(std::string_view name) {
  const auto known = _done.find(name);
  if (known != _done.end()) return known->second;
  const auto* const at = std::find(std::begin(step_names), std::end(step_names), name);
  const bool can_be = at == std::begin(step_names) || _done_step(*(at - 1));
  return _done.emplace(name, can_be ? _find_done(name) : std::nullopt).first->second;
}

std::optional<Step> StepsOver::_find_done(std::string_view name) try {
  Step step = step_of(name, _folder, _plan);
  for (std::size_t k = 0; k < step.tasks; ++k)
    if (!all_done(_folder, {step.task(k)})) return std::nullopt;
  return step;
} catch (const damaged_file&) {
  return std::nullopt;
} catch (const fatal_error&) {  // which ends all work
  return std::nullopt;
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
