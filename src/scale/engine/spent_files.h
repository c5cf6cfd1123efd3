#pragma once

// Which intermediate files pass from one step to a later one and are not needed behind it. They may go then, to make
// room. Should one be needed after all, as something that was made of it is damaged, it is missing, and made again as
// any other that is.

#include <string_view>

namespace colx::scale {

// The step that a task is of.
std::string_view step_of_task(std::string_view task);

// The step that is the last to read a file of a task; empty for a file that stays, which write reads.
std::string_view last_reader(std::string_view task, std::string_view what);

}  // namespace colx::scale
