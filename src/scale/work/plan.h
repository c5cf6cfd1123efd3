#pragma once

// What is to be done: the datafiles as they were found, the shards into which they are cut, and the options. The plan
// is written once and read by every task.

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "scale/work/work_folder.h"

namespace colx::scale {

// A datafile of the list.
struct Datafile {
  std::string path;           // as messages and statistics name it
  std::string source;         // where its bytes are: itself, or a copy of what can be read only once
  std::uint64_t size = 0;     // in bytes
  std::uint64_t version = 0;  // checksum of the content; 0 when it could not be read
  std::uint64_t stamp = 0;    // by which it is seen that the content may have changed
  bool has_bar = true;        // whether ngrex would draw a progress bar over it, that is, knows how long it is

  // Whether it could be opened, and read to its end, when the plan was made. What fails later passes over, and is no
  // reason to count the corpus without it.
  bool was_opened() const { return stamp != 0 || source != path; }
  bool was_read() const { return version != 0; }

  friend bool operator==(const Datafile&, const Datafile&) = default;
};

// What one task reads: a piece of a datafile, or some small datafiles one after another. Cuts are nominal: a piece
// really begins behind the first empty line from `begin` on.
struct Shard {
  std::size_t datafile = 0;   // the first one
  std::size_t datafiles = 1;  // when there are several, each is whole
  std::uint64_t begin = 0;    // of a single one
  std::uint64_t end = 0;
  bool is_last = false;  // of its datafile

  std::size_t end_datafile() const { return datafile + datafiles; }

  friend bool operator==(const Shard&, const Shard&) = default;
};

// What all tasks go by.
struct Plan {
  std::vector<std::string> words;  // options of ngrex, as given
  std::vector<std::vector<std::string>> morphologic_rules;
  std::vector<std::string> context_rules;
  std::vector<Datafile> datafiles;
  std::vector<Shard> shards;
  std::uint64_t shard_size = 0;  // bytes
  std::size_t memory = 0;        // for each process
  unsigned bucket_bits = 0;      // of the hash of a record, by which runs are ordered
  std::size_t reduces = 1;       // tasks that add up the runs
  unsigned context_bits = 0;     // of the hash of a record of any type, by which runs of contexts are ordered
  std::uint64_t counting = 0;    // tells apart options that make the counts different

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
// of a damaged plan, nothing. Throws usage_error when the folder holds counts for other options that may not be
// dropped.
void make_plan(const WorkFolder& folder, const std::vector<std::string>& paths, const PlanWishes& wishes, Plan& plan);

}  // namespace colx::scale
