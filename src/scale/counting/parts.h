#pragma once

// The parts in which listed N-grams are put in order, and written.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scale/counting/layout.h"
#include "scale/engine/plan.h"

namespace colx::scale {

// The ranges of buckets that are put in order together.
struct Part {
  std::size_t first_range = 0;
  std::size_t end_range = 0;
  std::uint64_t records = 0;
};

// The parts, one behind the other, by the sizes of the ranges in the arranged files.
std::vector<Part> parts_of(const WorkFolder& folder, const Plan& plan, const Layout& layout);

}  // namespace colx::scale
