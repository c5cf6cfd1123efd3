#pragma once

// Formatting contexts: the records of some cells are put in the order in which they are listed and become the text that
// the contexts file has of them.

#include <cstddef>
#include <cstdint>
#include <ostream>
#include <string>

#include "scale/contexts/context_layout.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// The name of a task, and of what it leaves.
std::string format_name(std::size_t part);

// What the tasks depend on, as far as it is the same for all; and what one of them depends on.
std::uint64_t formats_mark(const WorkFolder& folder, const ContextLayout& layout);
std::uint64_t format_key(std::uint64_t formats_mark, const ContextPart& part);

// Does the task of one part.
void format_contexts(const WorkFolder& folder, const ContextLayout& layout, std::uint64_t formats_mark,
                     const ContextPart& part, std::size_t number);

// Writes the contexts file from what the tasks have left.
void write_context_file(const WorkFolder& folder, const Plan& plan, std::ostream& out);

}  // namespace colx::scale
