#pragma once

// What has been counted, as far as the writing of any file needs it.

#include <cstddef>
#include <cstdint>
#include <vector>

#include "scale/counting/layout.h"
#include "scale/engine/plan.h"
#include "scale/shards/number_task.h"

namespace colx::scale {

// Reads it from the manifests of a folder in which nothing is left to be counted; folder and plan must outlive it.
struct Counted {
  // Throws damaged_file.
  Counted(const WorkFolder& work_folder, const Plan& whole_plan);

  const WorkFolder& folder;
  const Plan& plan;
  Numbering numbering;
  Layout layout;
  std::size_t parts;              // of the listing
  std::vector<bool> used;         // by shard
  std::uint64_t occurrences = 0;  // N-grams of the corpus

  std::uint64_t words() const;
};

}  // namespace colx::scale
