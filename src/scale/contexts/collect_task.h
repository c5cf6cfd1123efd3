#pragma once

// Collecting contexts: the words seen around the N-grams of one shard, of all types, in runs as the memory allows.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "scale/engine/plan.h"
#include "scale/shards/number_task.h"
#include "spill/manifest.h"

namespace colx::scale {

// What a task says of its shard.
struct CollectResult {
  std::uint64_t occurrences = 0;
  std::size_t runs = 0;
  std::vector<std::uint64_t> bytes;  // of its runs, by type

  static CollectResult from(const Manifest& manifest);
};

// The name of the task, and of its files of runs, which scale/sighting_run describes.
std::string collect_name(std::size_t shard);
std::string sightings_file(const WorkFolder& folder, std::size_t shard, std::size_t run);

// What the task depends on: the sentences of the shard and those around it, as far as windows reach.
std::uint64_t collect_key(const WorkFolder& folder, const Plan& plan, const std::vector<NumberedShard>& shards,
                          std::size_t shard);

// Does the task.
void collect(const WorkFolder& folder, const Plan& plan, const std::vector<NumberedShard>& shards, std::size_t shard);

}  // namespace colx::scale
