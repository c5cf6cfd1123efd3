#pragma once

// Arranging: the distinct N-grams of one part of the reduction are distributed over the ranges of buckets in which they
// will be listed. Those that the filter refuses leave their patterns here, unless all N-grams fit into memory when
// patterns are counted.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "scale/counting/layout.h"
#include "scale/engine/plan.h"
#include "spill/manifest.h"

namespace colx::scale {

// What a task says.
struct ArrangeResult {
  std::size_t rounds = 0;              // how often the memory was full: each round has a segment for every range
  std::vector<std::uint64_t> records;  // by range
  std::size_t refused_rounds = 0;      // how often it was full of those that the filter refuses

  static ArrangeResult from(const Manifest& manifest);
};

// The file of arranged records, each with members, count and first place.
inline constexpr std::string_view arranged_kind = "arra";

// The name of a task, and of what it leaves.
std::string arrange_name(std::size_t task);
std::string refused_patterns(std::size_t round);

// What the task depends on: all of the reduction.
std::uint64_t arrange_key(const WorkFolder& folder, const Plan& plan);

// Does one of plan.reduces tasks.
void arrange(const WorkFolder& folder, const Plan& plan, std::size_t task);

// When the records that made the set grow were first seen, from what the tasks have left.
std::vector<std::uint64_t> growing_places(const WorkFolder& folder, const Plan& plan, const Layout& layout);

}  // namespace colx::scale
