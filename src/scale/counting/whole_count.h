#pragma once

// Counting patterns where one process has room for all N-grams: each task reads them all and works out the patterns of
// some types, so that no patterns have to be written and brought together.

#include <cstddef>
#include <string>

#include "scale/counting/layout.h"
#include "scale/counting/patterns.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// Does a task of `count` when the layout says that it is to be done so: leaves the same as any other.
void count_whole(const WorkFolder& folder, const Plan& plan, const Layout& layout, const Pairs& pairs,
                 std::size_t parts, const std::string& name, TaskResult& done);

}  // namespace colx::scale
