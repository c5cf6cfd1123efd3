#pragma once

// Which steps of a folder are over. Files go when the last step that reads them is. A run that needs one after all goes
// back; who does a step by itself cannot, and looks ahead instead.

#include <map>
#include <optional>
#include <string>
#include <string_view>

#include "scale/engine/plan.h"
#include "scale/engine/work_folder.h"
#include "scale/steps.h"

namespace colx::scale {

// Looks at steps, and remembers what it has found: to be used within one step, as another may be over by the next.
class StepsOver {
 public:
  StepsOver(const WorkFolder& folder, const Plan& plan) : _folder(folder), _plan(plan) {}

  // Whether all tasks of a step are done, and none of them is missed.
  bool holds(std::string_view step);

  // Whether a task that is done lacks files which a step will read that is not over; then it has to be done again.
  bool is_missed(const std::string& task);

 private:
  // A step whose tasks are all done, and those of all steps before it: what they leave tells which tasks it has, and
  // what is left of older counts tells nothing.
  const std::optional<Step>& _done_step(std::string_view step);
  std::optional<Step> _find_done(std::string_view step);

  const WorkFolder& _folder;
  const Plan& _plan;
  std::map<std::string_view, bool> _known;
  std::map<std::string_view, std::optional<Step>> _done;
};

}  // namespace colx::scale
