#pragma once

// Mapping: the sentences of a shard become counted N-grams, of the full type only: whatever there is to know of their
// patterns follows from them. When the memory is full, what has been counted goes to a file as a run, ordered by a
// hash, and counting begins anew.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "scale/engine/plan.h"
#include "scale/shards/number_task.h"
#include "spill/manifest.h"

namespace colx::scale {

// What a task has found in a datafile, as far as it is of its shard.
struct MappedDatafile {
  std::uint64_t occurrences = 0;
  std::uint64_t passed = 0;            // of them, by the morphological filter
  std::vector<std::uint64_t> matched;  // by rule of the filter
};

// What a task says of its shard.
struct MapResult {
  std::uint64_t occurrences = 0;
  std::size_t runs = 0;
  std::vector<MappedDatafile> datafiles;

  static MapResult from(const Manifest& manifest);
};

// The name of the task, and of its files of runs.
std::string map_name(std::size_t shard);
std::string run_file(const WorkFolder& folder, std::size_t shard, std::size_t run);

// What the task depends on.
std::uint64_t map_key(const WorkFolder& folder, const Plan& plan, std::size_t shard, const NumberedShard& numbered);

// Does the task.
void map_shard(const WorkFolder& folder, const Plan& plan, std::size_t shard, const NumberedShard& numbered);

}  // namespace colx::scale
