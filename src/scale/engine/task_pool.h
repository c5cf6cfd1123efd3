#pragma once

// Tasks as processes, some at a time.

#include <cstddef>
#include <cstdint>
#include <exception>
#include <functional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "scale/engine/work_folder.h"

namespace colx::scale {

// Something to be done by a process of its own. Its body leaves files and says that it is done.
struct Task {
  std::string name;
  std::uint64_t key;  // what its result depends on
  std::function<void()> body;
};

// What becomes of the other tasks when one fails.
enum class OnFailure { stop, keep_going };

// Several tasks have failed.
class several_failures : public std::runtime_error {
 public:
  explicit several_failures(std::vector<std::exception_ptr> all)
      : std::runtime_error("several tasks failed"), _all(std::move(all)) {}

  // Each of them, as it would have been thrown alone.
  const std::vector<std::exception_ptr>& all() const { return _all; }

 private:
  std::vector<std::exception_ptr> _all;
};

// Collects failures, if what is left is to be done all the same.
class Failures {
 public:
  explicit Failures(OnFailure on_failure) : _on_failure(on_failure) {}

  // Does something that may fail.
  void watch(const std::function<void()>& something);

  // Throws what there was: the only failure, several_failures or, before all others, damaged_file.
  void tell() const;

 private:
  OnFailure _on_failure;
  std::exception_ptr _damaged;
  std::vector<std::exception_ptr> _all;
};

// Does all tasks that are not done yet, at most `jobs` at a time, in their order. When one fails the others are ended
// and its failure is thrown here: damaged_file, fatal_error, output_error, or what else it was as std::runtime_error.
// If the others are to keep going they are all done first, and what Failures throws is thrown then.
void do_tasks(const WorkFolder& folder, const std::vector<Task>& tasks, std::size_t jobs,
              OnFailure on_failure = OnFailure::stop);

// Runs the bodies of all tasks at the same time, whatever has been done. Fails as do_tasks does.
void do_together(const std::vector<Task>& tasks);

// Whether all tasks are done. Throws damaged_file when one was, and what it has left is damaged or missing.
bool all_done(const WorkFolder& folder, const std::vector<Task>& tasks);

}  // namespace colx::scale
