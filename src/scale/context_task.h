#pragma once

// Contexts: the words seen around N-grams. They are collected by one process for the whole corpus, in memory.

#include <ostream>

#include "scale/plan.h"

namespace colx::scale {

inline const std::string context_name = "contexts";

// What the task depends on: the sentences and their numbers.
std::uint64_t context_key(const WorkFolder& folder);

// Does the task.
void collect_contexts(const WorkFolder& folder, const Plan& plan);

// Writes the contexts file from what the task has left.
void write_context_file(const WorkFolder& folder, std::ostream& out);

}  // namespace colx::scale
