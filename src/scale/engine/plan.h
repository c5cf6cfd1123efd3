#pragma once

// What is to be done: the datafiles as they were found, the shards into which they are cut, and the options. The plan
// is written once and read by every task.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "scale/engine/shard.h"
#include "scale/engine/work_folder.h"

namespace colx::scale {

// What all tasks go by.
struct Plan {
  std::vector<std::string> words;  // options of ngrex, as given
  std::vector<std::vector<std::string>> morphologic_rules;
  std::vector<std::string> context_rules;
  std::vector<Datafile> datafiles;
  std::vector<Shard> shards;
  std::uint64_t shard_size = 0;     // bytes
  std::size_t memory = 0;           // for each process
  std::uint64_t planned_bytes = 0;  // of the corpus for which buckets were chosen
  unsigned bucket_bits = 0;         // of the hash of a record, by which runs are ordered
  std::size_t reduces = 1;          // tasks that add up the runs
  unsigned context_bits = 0;        // of the hash of a record of any type, by which runs of contexts are ordered
  std::uint64_t counting = 0;       // tells apart options that make the counts different

  // The task's own part of what its result depends on.
  std::uint64_t key_of_shard(std::size_t shard) const;

  // Sets the settings of the process from the options. The plan must outlive them.
  void apply_options() const;

  void save(const WorkFolder& folder) const;

  // Nothing when there is no plan in the folder. Throws damaged_file.
  static std::optional<Plan> load(const WorkFolder& folder);
};

// Whether the window of the settings is such that ngrex reads a datafile only up to its first sentence.
bool only_first_sentence();

// What the caller asks of a plan; 0 leaves the choice to the plan.
struct PlanWishes {
  std::uint64_t shard_size = 0;
  std::size_t memory = 0;
  std::size_t jobs = 1;
  bool may_start_over = false;  // whether counts for other options, which stand in the folder, may be dropped
};

// Completes the plan for the options in the settings, whose words and rules stand in it, and these datafiles, and saves
// it. What stood in the folder before is kept as far as it is still right: cuts, and datafiles that have not changed;
// of a damaged plan, nothing, and of one that the corpus has outgrown, what is known of datafiles alone. Throws
// usage_error when the folder holds counts for other options that may not be dropped.
void make_plan(const WorkFolder& folder, const std::vector<std::string>& paths, const PlanWishes& wishes, Plan& plan);

}  // namespace colx::scale
