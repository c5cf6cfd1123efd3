#pragma once

// Ordering: the N-grams of some ranges of buckets are put in the order in which they are listed, and leave their
// patterns, unless all N-grams fit into memory when patterns are counted.

#include <cstddef>
#include <cstdint>
#include <string>

#include "scale/counting/layout.h"
#include "scale/counting/parts.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// The file of ordered records, by blocks, each with members and count.
inline constexpr std::string_view ordered_kind = "orde";

// The name of a task, and of what it leaves.
std::string order_name(std::size_t part);

// What the tasks depend on: all that is arranged, and the cut into parts.
std::uint64_t order_key(const WorkFolder& folder, const Plan& plan, const Part& part);

// Does the task of one part. Its patterns, if any are left, stand in the file "patterns".
void order(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Part& part, std::size_t number);

}  // namespace colx::scale
