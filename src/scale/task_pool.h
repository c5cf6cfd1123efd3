#pragma once

// Tasks as processes, some at a time.

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "scale/work_folder.h"

namespace colx::scale {

// Something to be done by a process of its own. Its body leaves files and says that it is done.
struct Task {
  std::string name;
  std::uint64_t key;  // what its result depends on
  std::function<void()> body;
};

// Does all tasks that are not done yet, at most `jobs` at a time, in their order. When one fails the others are ended
// and its failure is thrown here: damaged_file, fatal_error, output_error, or what else it was as std::runtime_error.
void do_tasks(const WorkFolder& folder, const std::vector<Task>& tasks, std::size_t jobs);

// Runs the bodies of all tasks at the same time, whatever has been done. Fails as do_tasks does.
void do_together(const std::vector<Task>& tasks);

// Whether all tasks are done.
bool all_done(const WorkFolder& folder, const std::vector<Task>& tasks);

}  // namespace colx::scale
