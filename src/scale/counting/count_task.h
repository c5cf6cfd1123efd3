#pragma once

// Counting patterns: equal patterns come together, partition by partition, or all at once where there is room for that,
// and every listed N-gram gets the frequencies of its patterns, in the order of the listing.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "scale/counting/layout.h"
#include "scale/counting/patterns.h"
#include "scale/engine/plan.h"
#include "spill/manifest.h"

namespace colx::scale {

// The pairs of each task.
std::vector<Pairs> count_tasks(const Plan& plan, const Layout& layout);

// The name of a task, and of what it leaves: the frequencies of the patterns of all parts stand in its file
// "frequencies".
std::string count_name(std::size_t task);

// What the tasks depend on: the N-grams of all parts, and their patterns.
std::uint64_t count_key(const WorkFolder& folder, const Plan& plan, const Pairs& pairs, std::size_t parts);

// How many different N-grams of each type ngrex would hold, from what the tasks have left.
std::vector<std::uint64_t> records_by_type(const WorkFolder& folder, const Plan& plan, const Layout& layout);

// Does one task. Its manifest says how many different patterns of each type there are.
void count_patterns(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Pairs& pairs,
                    std::size_t parts, std::size_t number);

}  // namespace colx::scale
