#pragma once

// Reducing: the runs of all shards become distinct N-grams, bucket by bucket of their hash, with their whole counts and
// the places where they were first seen in the corpus.

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "scale/engine/plan.h"
#include "spill/manifest.h"

namespace colx::scale {

// The numbers of occurrences of the corpus, shard by shard.
struct Occurrences {
  std::vector<std::uint64_t> before;  // by shard: in the shards before it
  std::vector<std::size_t> runs;      // by shard
  std::uint64_t all = 0;

  // What the map tasks say, of the shards that are used.
  static Occurrences from(const WorkFolder& folder, const std::vector<bool>& used);
};

// How first places are counted for a start: by pieces of the corpus of 2^shift occurrences.
inline constexpr std::size_t most_pieces = 4096;
unsigned piece_shift(std::uint64_t occurrences);

// What a task says: how many N-grams the filter lets through, how many it refuses, and how first places are counted.
struct ReduceResult {
  std::uint64_t listed = 0;
  std::uint64_t refused = 0;
  unsigned piece_shift = 0;

  static ReduceResult from(const Manifest& manifest);
};

// The files of a task, by blocks of records. Of a listed N-gram: members, count, first place. Of one that the
// morphological filter refuses, whose patterns may count all the same: members and count. Numbers by piece: 32 bits
// each.
inline constexpr std::string_view listed_kind = "list";
inline constexpr std::string_view refused_kind = "refu";
inline constexpr std::string_view pieces_kind = "piec";

// The name of a task, and of what it leaves.
std::string reduce_name(std::size_t task);

// What the tasks depend on: the runs.
std::uint64_t reduce_key(const WorkFolder& folder, const Plan& plan, const std::vector<bool>& used, std::size_t task);

// Does the task that has one of plan.reduces parts of all buckets.
void reduce(const WorkFolder& folder, const Plan& plan, const std::vector<bool>& used, std::size_t task);

}  // namespace colx::scale
